import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

/// A menu item that shows its shortcut. Takes no space while hidden.
T.MenuItem {
    id: root

    property string shortcut: ""

    implicitHeight: visible ? Math.round(28 * Theme.u) : 0
    verticalPadding: 6
    leftPadding: Theme.spaceM
    rightPadding: Theme.spaceM + (subMenu ? Theme.spaceL : 0)
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    font.pixelSize: Theme.body
    activeFocusOnTab: visible  // arrow keys in a menu go by this

    Accessible.role: Accessible.MenuItem
    Accessible.name: text

    contentItem: RowLayout {
        spacing: Theme.spaceL
        opacity: root.enabled ? 1 : 0.45

        Text {
            text: root.text
            textFormat: Text.PlainText
            color: Theme.text
            font: root.font
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        Text {
            visible: text !== ""
            text: root.shortcut
            color: root.highlighted ? Theme.text : Theme.secondary
            font: root.font
        }
    }
    arrow: Symbol {
        visible: root.subMenu
        name: "chevron.right"
        color: Theme.secondary
        size: Theme.caption
        x: root.width - width - Theme.spaceS
        y: Math.round((root.height - height) / 2)
    }
    background: Rectangle {
        radius: Theme.radiusS - 1
        color: root.highlighted ? Theme.faint(Theme.accent, (Theme.dark ? 0.32 : 0.15) + (root.down ? 0.1 : 0)) : "transparent"
    }
}
