import QtQuick
import Ulvak
import Ulvak.Style

/// The levels that a finding can be given, and the way back to its first.
Menu {
    id: root

    required property ActionsModel actions
    required property string findingId
    property bool canReset: false

    title: "Etiketi Değiştir"

    // Made with the menu: lines that a repeater makes later come after those that are there.
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
