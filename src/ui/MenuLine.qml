import QtQuick
import QtQuick.Controls.Basic

/// A line of a menu.
MenuItem {
    id: root

    property bool destructive: false

    implicitHeight: visible ? Math.round(28 * Theme.u) : 0
    leftPadding: Theme.spaceM
    rightPadding: Theme.spaceM + (subMenu ? Theme.spaceL : 0)
    font.pixelSize: Theme.body

    contentItem: Text {
        text: root.text
        textFormat: Text.PlainText
        color: root.destructive ? Theme.red : Theme.text
        opacity: root.enabled ? 1 : 0.45
        font: root.font
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    arrow: Symbol {
        visible: root.subMenu
        name: "chevron.right"
        color: Theme.secondary
        size: Theme.caption
        x: root.width - width - Theme.spaceS
        y: (root.height - height) / 2
    }
    background: Rectangle {
        radius: Theme.radiusS - 1
        color: root.highlighted ? Theme.faint(Theme.accent, Theme.dark ? 0.32 : 0.15) : "transparent"
    }
}
