import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// A row of the sidebar.
Item {
    id: root

    required property string symbol
    required property string title
    property color tint: Theme.accent
    property string trailing: ""
    property bool selected: false
    property bool focused: false

    signal chosen()
    /// The selected row was pressed with Ctrl.
    signal unchosen()

    // On one line, at the bold weight of a selected row.
    implicitWidth: 2 * content.anchors.leftMargin + mark.implicitWidth + content.spacing + Math.ceil(bold.advanceWidth) + 1
                   + (trailing === "" ? 0 : texts.columnSpacing + size.implicitWidth)
    implicitHeight: Math.max(Math.round(32 * Theme.u), texts.implicitHeight + Theme.spaceS)

    Accessible.role: Accessible.ListItem
    Accessible.name: trailing === "" ? title : title + ", " + trailing
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.focused: focused
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
    TextMetrics {
        id: bold
        text: root.title
        font.pixelSize: Theme.body
        font.weight: Font.DemiBold
    }
    RowLayout {
        id: content
        anchors.fill: parent
        anchors.leftMargin: Math.round(8 * Theme.u)
        anchors.rightMargin: anchors.leftMargin
        spacing: Math.round(8 * Theme.u)

        Symbol {
            id: mark
            name: root.symbol
            color: root.tint
            size: Theme.body * 1.3
        }
        // The size wraps below a title that needs the room.
        GridLayout {
            id: texts
            columns: label.implicitWidth + size.implicitWidth + columnSpacing > width ? 1 : 2
            columnSpacing: Theme.spaceS
            rowSpacing: 0
            Layout.fillWidth: true

            Text {
                id: label
                text: root.title
                textFormat: Text.PlainText
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: root.selected ? Font.DemiBold : Font.Normal
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            Figures {
                id: size
                objectName: "rowSize"
                visible: text !== ""
                text: root.trailing
                color: Theme.secondary
                font.pixelSize: Theme.caption
            }
        }
    }
    HoverHandler { id: hover }
    TapHandler {
        acceptedModifiers: Qt.NoModifier
        onPressedChanged: if (pressed) root.chosen()
    }
    TapHandler {
        acceptedModifiers: Qt.ControlModifier
        onTapped: root.selected ? root.unchosen() : root.chosen()
    }
}
