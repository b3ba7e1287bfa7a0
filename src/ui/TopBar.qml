import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The window's toolbar: the program's name, the scan button and the menu.
Rectangle {
    id: root

    required property ScanModel scan

    function openMenu() {
        menu.openBy(true)
    }

    function focusScanButton(reason: int) {
        scanButton.forceActiveFocus(reason)
    }

    implicitHeight: Math.max(Math.round(46 * Theme.u), row.implicitHeight + Theme.spaceL)
    color: Theme.side

    Accessible.role: Accessible.ToolBar
    Accessible.name: "Araç çubuğu"

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.leftMargin: Theme.spaceL
        anchors.rightMargin: Theme.spaceL
        spacing: Theme.spaceM

        PlainText {
            text: "Ulvak"
            font.pixelSize: Theme.headline
            font.bold: true
            Layout.fillWidth: true
        }
        Button {
            id: scanButton
            objectName: "scan"
            text: root.scan.buttonText
            icon.source: "image://symbols/" + (root.scan.phase === ScanModel.Scanning ? "stop.fill" : "arrow.clockwise")
            onClicked: root.scan.phase === ScanModel.Scanning ? root.scan.cancel() : root.scan.start()
            ToolTip {
                visible: scanButton.hovered && root.scan.phase !== ScanModel.Scanning
                text: "Tara (Ctrl+R)"
            }
        }
        Button {
            id: menuButton
            objectName: "menuButton"
            text: ""
            icon.source: "image://symbols/line.3.horizontal"
            Accessible.name: "Menü"
            Accessible.role: Accessible.ButtonMenu
            onClicked: menu.openBy(visualFocus)
            ToolTip {
                visible: menuButton.hovered && !menu.visible
                text: "Menü (F10)"
            }

            Menu {
                id: menu
                objectName: "mainMenu"
                x: menuButton.width - width
                y: menuButton.height + 4

                MenuItem {
                    objectName: "menuScan"
                    text: "Tara"
                    shortcut: "Ctrl+R"
                    enabled: root.scan.phase !== ScanModel.Scanning
                    onTriggered: root.scan.start()
                }
                MenuSeparator {}
                MenuItem {
                    objectName: "menuQuit"
                    text: "Kapat"
                    shortcut: "Ctrl+Q"
                    onTriggered: root.Window.window.close()
                }
            }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }
}
