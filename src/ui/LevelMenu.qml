import QtQuick
import Ulvak

/// The levels that a finding can be given, and the way back to its first.
MenuPanel {
    id: root

    required property ActionsModel actions
    required property string findingId
    property bool canReset: false

    title: "Etiketi Değiştir"

    // Made with the menu: lines that a repeater makes later come after those that are there.
    Repeater {
        model: root.actions.levels
        MenuLine {
            required property int level
            required property string name
            required property string title
            objectName: "level-" + name
            text: title
            onTriggered: root.actions.setLevel(level, root.findingId)
        }
    }
    MenuRule {
        visible: root.canReset
    }
    MenuLine {
        objectName: "reset"
        visible: root.canReset
        height: visible ? implicitHeight : 0
        text: "İlk etikete dön"
        onTriggered: root.actions.resetVerdict(root.findingId)
    }
}
