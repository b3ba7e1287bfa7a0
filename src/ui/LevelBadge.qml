import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// A level as a capsule: its symbol and title in its colour.
Rectangle {
    id: root

    required property levelInfo about
    property bool compact: false
    readonly property color tint: Theme.named(about.color)

    implicitWidth: row.implicitWidth + 2 * Math.round(7 * Theme.u)
    implicitHeight: row.implicitHeight + 2 * Math.round(3 * Theme.u)
    radius: Math.min(height / 2, Theme.caption)
    color: Theme.faint(tint, 0.14)

    Accessible.role: Accessible.StaticText
    Accessible.name: label.text

    RowLayout {
        id: row
        anchors.centerIn: parent
        width: Math.min(implicitWidth, root.width - 2 * Math.round(7 * Theme.u))
        spacing: Math.round(4 * Theme.u)

        Symbol {
            name: root.about.symbol
            color: root.tint
            size: Theme.caption * 1.15
            Layout.alignment: Qt.AlignTop
        }
        Text {
            id: label
            text: root.compact ? root.about.shortTitle : root.about.title
            textFormat: Text.PlainText
            color: Theme.dark ? root.tint : Qt.darker(root.tint, 1.2)
            font.pixelSize: Theme.caption
            font.weight: Font.Medium
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
    }
}
