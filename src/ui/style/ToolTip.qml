import QtQuick
import QtQuick.Templates as T

/// The full text of something truncated, or what a control does. Plain text, whatever a name contains.
T.ToolTip {
    id: root

    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: -implicitHeight - 3
    implicitWidth: Math.max(implicitBackgroundWidth + leftInset + rightInset, contentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight + topInset + bottomInset, contentHeight + topPadding + bottomPadding)
    delay: 600
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent
    margins: 6
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
