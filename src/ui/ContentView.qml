import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The window's toolbar and its three columns.
Item {
    id: root

    required property WindowModel app

    readonly property int phase: app.scan.phase
    readonly property real scale13: Math.max(1, Math.min(Theme.base / 13, 1.6))
    // Wanted widths of the side columns, applied as far as space allows; the user's resizes are stored here.
    property real sideWish: Math.max(230 * scale13, Math.min(side.wholeWidth, 270 * scale13))
    property real detailWish: 380
    // If the screen is too small for all three columns, each shrinks.
    readonly property real squeeze: Math.min(1, columns.width / 952)

    // In a narrow window the content column keeps its minimum width and the side columns shrink first.
    function fit() {
        const room = columns.width - content.SplitView.minimumWidth - 2
        const give = (item, wish, other) => {
            item.fitted = Math.max(item.SplitView.minimumWidth, Math.min(wish, room - other))
            item.SplitView.preferredWidth = item.fitted
        }
        give(detail, detailWish, sideWish)
        give(side, sideWish, detail.fitted)
    }

    function rememberDragged() {
        if (side.SplitView.preferredWidth !== side.fitted)
            sideWish = side.SplitView.preferredWidth
        if (detail.SplitView.preferredWidth !== detail.fitted)
            detailWish = detail.SplitView.preferredWidth
        fit()
    }

    // Moves the focus when the page that had it is gone.
    function keepFocus() {
        if (phase === ScanModel.Scanning && app.isOverview && content.activeFocus)
            bar.focusScanButton(Qt.TabFocusReason)
    }

    onSideWishChanged: fit()
    // Deferred: the button that was pressed may pass the focus on itself.
    onPhaseChanged: Qt.callLater(root.keepFocus)  // qmllint disable

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        TopBar {
            id: bar
            scan: root.app.scan
            Layout.fillWidth: true
        }
        SplitView {
            id: columns
            objectName: "columns"
            orientation: Qt.Horizontal
            onWidthChanged: root.fit()
            onResizingChanged: if (!resizing) root.rememberDragged()
            Layout.fillWidth: true
            Layout.fillHeight: true

            SidebarView {
                id: side
                app: root.app
                focus: true
                property real fitted: 0
                SplitView.minimumWidth: Math.floor(210 * root.squeeze)
            }
            FocusScope {
                id: content
                objectName: "content"
                SplitView.minimumWidth: Math.floor(420 * root.squeeze)
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
                property real fitted: 0
                SplitView.minimumWidth: Math.floor(320 * root.squeeze)
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
        OverviewView {
            app: root.app
            onScanBegun: reason => bar.focusScanButton(reason)
        }
    }
    Component {
        id: list
        FindingListView {
            app: root.app
            onDeleteRequested: detail.pressMain()
        }
    }
    TrashDialog { trash: root.app.trash }
    AlertDialog { alert: root.app.alert }
}
