import QtQuick
import QtQuick.Controls.Basic

/// A scroll bar in the window's own look, there while there is something to scroll to.
ScrollBar {
    id: root

    padding: 2
    minimumSize: 0.06
    policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff

    Accessible.ignored: true  // the keys scroll what it belongs to

    contentItem: Rectangle {
        implicitWidth: Math.round((root.hovered || root.pressed ? 8 : 6) * Theme.u)
        implicitHeight: implicitWidth
        radius: width / 2
        color: root.pressed ? Theme.secondary : Theme.faint(Theme.secondary, root.hovered ? 0.7 : 0.35)
    }
    background: Item {}
}
