import QtQuick

/// A short text whose digits are all equally wide, so that numbers stand still while they change and line up
/// below each other. Fonts may have such digits, but this version of the toolkit cannot ask them for it.
Row {
    id: root

    property string text: ""
    property color color: Theme.text
    property alias font: metrics.font

    readonly property var parts: text.match(/[0-9]|[^0-9]+/g) ?? []
    readonly property real digitWidth: {
        let width = 0
        for (const digit of "0123456789")
            width = Math.max(width, metrics.advanceWidth(digit))
        return width
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    FontMetrics { id: metrics }
    Repeater {
        model: root.parts.length

        Text {
            id: glyph
            required property int index
            readonly property string part: root.parts[index] ?? ""

            width: part >= "0" && part <= "9" ? root.digitWidth : implicitWidth
            text: part
            textFormat: Text.PlainText
            color: root.color
            font: root.font
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
    }
}
