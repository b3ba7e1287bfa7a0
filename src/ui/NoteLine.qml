import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// A line of small print with a symbol.
RowLayout {
    id: root

    required property string symbol
    required property string text
    required property real size

    spacing: Theme.spaceS

    Symbol {
        name: root.symbol
        color: Theme.secondary
        size: root.size * 1.25
        Layout.alignment: Qt.AlignTop
    }
    PlainText {
        text: root.text
        color: Theme.secondary
        font.pixelSize: root.size
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}
