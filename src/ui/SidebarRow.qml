import QtQuick
import QtQuick.Layouts

/// A row of the sidebar.
Item {
    id: root

    required property string item
    required property string symbol
    required property string title
    property color tint: Theme.accent
    property string trailing: ""
    property bool selected: false
    property bool focused: false

    signal chosen()

    implicitHeight: Math.round(32 * Theme.u)

    Accessible.role: Accessible.ListItem
    Accessible.name: trailing === "" ? title : title + ", " + trailing
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.onPressAction: chosen()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusS
        color: root.selected ? Theme.faint(Theme.accent, Theme.dark ? 0.28 : 0.15)
                             : hover.hovered ? Theme.hover : "transparent"
        border.width: root.focused ? 2 : 0
        border.color: Theme.accent
        Behavior on color { ColorAnimation { duration: Theme.quick } }
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.spaceM
        anchors.rightMargin: Theme.spaceM
        spacing: Theme.spaceM

        Symbol {
            name: root.symbol
            color: root.tint
            size: Theme.body * 1.3
        }
        Text {
            text: root.title
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.body
            font.weight: root.selected ? Font.DemiBold : Font.Normal
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        Text {
            visible: text !== ""
            text: root.trailing
            color: Theme.secondary
            font.pixelSize: Theme.caption
        }
    }
    HoverHandler { id: hover }
    TapHandler { onTapped: root.chosen() }
}
