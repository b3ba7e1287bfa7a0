import QtQuick
import QtQuick.Controls.Basic

/// The whole of a text that is cut, or what a control does. Plain text, whatever a name holds.
ToolTip {
    id: root

    delay: 600
    padding: Theme.spaceS
    width: Math.min(implicitContentWidth + 2 * padding, 480 * Theme.u)

    contentItem: Text {
        text: root.text
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        color: Theme.text
        font.pixelSize: Theme.caption
    }
    background: Rectangle {
        radius: Theme.radiusS
        color: Theme.raised
        border.color: Theme.line
    }
}
