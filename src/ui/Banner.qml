import QtQuick
import QtQuick.Layouts

/// A notice in one colour, with room for what can be done about it.
Rectangle {
    id: root

    required property string symbol
    required property color tint
    required property string text
    default property alias accessory: place.data

    implicitHeight: row.implicitHeight + 2 * Math.round(12 * Theme.u)
    radius: Theme.radiusM
    color: Theme.faint(tint, 0.08)

    Accessible.role: Accessible.Notification
    Accessible.name: text

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.margins: Math.round(12 * Theme.u)
        spacing: Theme.spaceM

        Symbol {
            name: root.symbol
            color: root.tint
            size: Theme.body * 1.4
        }
        Text {
            text: root.text
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.body
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        RowLayout {
            id: place
            spacing: Theme.spaceM
        }
    }
}
