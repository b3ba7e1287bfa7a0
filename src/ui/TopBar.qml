import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

/// The window's toolbar: what is looked at, and the one button that scans.
Rectangle {
    id: root

    required property var app

    implicitHeight: Math.round(46 * Theme.u)
    color: Theme.side

    Accessible.role: Accessible.ToolBar
    Accessible.name: "Araç çubuğu"

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.spaceL
        anchors.rightMargin: Theme.spaceL
        spacing: Theme.spaceM

        Text {
            text: "Ulvak"
            color: Theme.text
            font.pixelSize: Theme.headline
            font.bold: true
            Layout.fillWidth: true
        }
        PushButton {
            objectName: "scan"
            text: root.app.scanButtonText
            symbol: root.app.phase === "scanning" ? "stop.fill" : "arrow.clockwise"
            onClicked: root.app.phase === "scanning" ? root.app.cancelScan() : root.app.scan()
            ToolTipText {
                visible: parent.hovered && root.app.phase !== "scanning"
                text: "Tara (" + shortcut + ")"
                readonly property string shortcut: "Ctrl+R"
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
