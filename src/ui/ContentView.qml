import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T

/// The window's three columns under its toolbar.
Item {
    id: root

    required property var app

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TopBar {
            app: root.app
            Layout.fillWidth: true
        }
        SplitView {
            objectName: "columns"
            orientation: Qt.Horizontal
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
                app: root.app
                SplitView.minimumWidth: 210
                SplitView.preferredWidth: 230 * Math.min(Theme.u, 1.4)
            }
            FocusScope {
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
            }
        }
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
    AlertDialog { app: root.app }
}
