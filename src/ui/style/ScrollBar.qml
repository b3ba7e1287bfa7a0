import QtQuick
import QtQuick.Templates as T

/// A scroll bar, shown while there is something to scroll.
T.ScrollBar {
    id: root

    implicitWidth: Math.max(implicitBackgroundWidth + leftInset + rightInset, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight + topInset + bottomInset, implicitContentHeight + topPadding + bottomPadding)
    padding: 2
    visible: policy !== T.ScrollBar.AlwaysOff
    minimumSize: 0.06
    policy: size < 1 ? T.ScrollBar.AlwaysOn : T.ScrollBar.AlwaysOff

    Accessible.ignored: true  // the keys scroll the view it belongs to

    contentItem: Rectangle {
        implicitWidth: Math.round((root.hovered || root.pressed ? 8 : 6) * Theme.u)
        implicitHeight: implicitWidth
        radius: width / 2
        color: root.pressed ? Theme.secondary : Theme.faint(Theme.secondary, root.hovered ? 0.7 : 0.35)
    }
    background: Item {}
}
