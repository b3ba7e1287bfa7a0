import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// Placeholder for an empty view.
Item {
    id: root

    required property string symbol
    required property string title
    required property string description
    property color tint: Theme.tertiary

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ". " + description

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.round(Math.min(parent.width - 2 * Theme.padding, 340 * Theme.u))
        spacing: Theme.spaceM

        Symbol {
            name: root.symbol
            color: root.tint
            size: 42 * Theme.u
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            text: root.title
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.title2
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        Text {
            text: root.description
            textFormat: Text.PlainText
            color: Theme.secondary
            font.pixelSize: Theme.body
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            lineHeight: 1.15
            Layout.fillWidth: true
        }
    }
}
