import QtQuick
import Ulvak
import Ulvak.Style

/// The levels a finding can be given, and an item to reset it.
Menu {
    id: root

    required property ActionsModel actions
    required property string findingId
    property bool canReset: false

    title: "Etiketi Değiştir"

    // Filled when the menu is created: items that a repeater adds later would follow the existing ones.
    Repeater {
        model: root.actions.levels
        MenuItem {
            required property int level
            required property string name
            required property string title
            objectName: "level-" + name
            text: title
            onTriggered: root.actions.setLevel(level, root.findingId)
        }
    }
    MenuSeparator {
        visible: root.canReset
    }
    MenuItem {
        objectName: "reset"
        visible: root.canReset
        text: "İlk etikete dön"
        onTriggered: root.actions.resetVerdict(root.findingId)
    }
}
