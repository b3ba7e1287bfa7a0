import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// Navigation: the summary and the levels, with the disk's space at the bottom.
FocusScope {
    id: root

    required property WindowModel app
    /// Wide enough to keep every row on one line.
    readonly property real wholeWidth: list.implicitWidth

    function choose(row: int) {
        forceActiveFocus(Qt.MouseFocusReason)
        app.sidebarRow = row
    }

    function step(by: int) {
        app.sidebarRow = Math.max(0, Math.min(app.summary.levels.count, app.sidebarRow + by))
    }

    objectName: "sidebar"
    activeFocusOnTab: true

    Accessible.role: Accessible.List
    Accessible.name: "Etiketler"

    Keys.onDownPressed: step(1)
    Keys.onUpPressed: step(-1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            root.app.sidebarRow = 0
        else if (event.key === Qt.Key_End)
            root.app.sidebarRow = root.app.summary.levels.count
        else if (event.key === Qt.Key_Space && event.modifiers & Qt.ControlModifier)
            root.app.sidebarRow = -1
        else
            return
        event.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.side
    }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        ScrollColumn {
            id: list
            activeFocusOnTab: false
            margin: Theme.spaceS
            spacing: Math.round(2 * Theme.u)
            Layout.fillWidth: true
            Layout.fillHeight: true

            SidebarRow {
                objectName: "row-overview"
                symbol: "internaldrive"
                title: "Özet"
                selected: root.app.sidebarRow === 0
                focused: (selected || root.app.sidebarRow < 0) && root.activeFocus && root.Window.active
                onSelectedChanged: if (selected) list.reveal(this)
                onChosen: root.choose(0)
                onUnchosen: root.choose(-1)
                Layout.fillWidth: true
            }
            PlainText {
                text: "Etiketler"
                color: Theme.secondary
                font.pixelSize: Theme.caption
                font.weight: Font.DemiBold
                Layout.topMargin: Theme.spaceL
                Layout.leftMargin: Math.round(8 * Theme.u)
                Layout.bottomMargin: Math.round(4 * Theme.u)
            }
            Repeater {
                objectName: "levels"
                model: root.app.summary.levels

                SidebarRow {
                    required property int index
                    required property string name
                    required property string color
                    required property string sizeText
                    readonly property int row: index + 1
                    objectName: "row-" + name
                    tint: Theme.named(color)
                    trailing: root.app.scan.phase === ScanModel.Done ? sizeText : ""
                    selected: root.app.sidebarRow === row
                    focused: selected && root.activeFocus && root.Window.active
                    onSelectedChanged: if (selected) list.reveal(this)
                    onChosen: root.choose(row)
                    onUnchosen: root.choose(-1)
                    Layout.fillWidth: true
                }
            }
        }
        ColumnLayout {
            objectName: "diskBlock"
            visible: root.app.disk.isKnown
            spacing: Math.round(6 * Theme.u)
            Layout.fillWidth: true
            Layout.margins: Math.round(12 * Theme.u)

            ProgressBar {
                objectName: "diskProgress"
                value: root.app.disk.usedFraction
                tint: root.app.disk.isLow ? Theme.red : Theme.accent
                Accessible.name: "Kullanılan alan"
                Layout.fillWidth: true
            }
            PlainText {
                objectName: "diskText"
                text: root.app.disk.text
                color: Theme.secondary
                font.pixelSize: Theme.caption
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
        }
    }
}
