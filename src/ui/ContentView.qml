import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T

/// The window's three columns under its toolbar.
Item {
    id: root

    required property var app

    // In a narrow window the content keeps its least width, and the columns beside it give theirs.
    function fit() {
        const room = columns.width - content.SplitView.minimumWidth - 2
        const narrow = (item, other) => {
            const width = Math.max(item.SplitView.minimumWidth, room - other)
            if (item.SplitView.preferredWidth > width)
                item.SplitView.preferredWidth = width
        }
        narrow(detail, side.SplitView.preferredWidth)
        narrow(side, detail.SplitView.preferredWidth)
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TopBar {
            id: bar
            app: root.app
            Layout.fillWidth: true
        }
        SplitView {
            id: columns
            objectName: "columns"
            orientation: Qt.Horizontal
            onWidthChanged: root.fit()
            Layout.fillWidth: true
            Layout.fillHeight: true

            handle: Item {
                id: handle
                readonly property bool isHeld: T.SplitHandle.pressed || T.SplitHandle.hovered
                implicitWidth: 1
                containmentMask: Item {
                    x: -4
                    width: 9
                    height: root.height
                }
                Rectangle {
                    anchors.fill: parent
                    color: handle.isHeld ? Theme.accent : Theme.line
                }
            }

            SidebarView {
                id: side
                app: root.app
                focus: true
                SplitView.minimumWidth: 210
                SplitView.preferredWidth: 230 * Math.max(1, Math.min(Theme.base / 13, 1.6))
            }
            FocusScope {
                id: content
                objectName: "content"
                SplitView.minimumWidth: 420
                SplitView.preferredWidth: 520
                SplitView.fillWidth: true

                Rectangle {
                    anchors.fill: parent
                    color: Theme.window
                }
                Loader {
                    anchors.fill: parent
                    focus: true
                    sourceComponent: root.app.isOverview ? overview : list
                }
            }
            DetailContainer {
                id: detail
                app: root.app
                SplitView.minimumWidth: 320
                SplitView.preferredWidth: 380
                onFocusLost: content.forceActiveFocus()
            }
        }
    }

    Shortcut {
        sequences: ["F10"]
        onActivated: bar.openMenu()
    }
    Component {
        id: overview
        OverviewView { app: root.app }
    }
    Component {
        id: list
        FindingListView {
            app: root.app
            onDeleteRequested: detail.pressMain()
        }
    }
    TrashDialog { app: root.app }
    AlertDialog { app: root.app }
}
