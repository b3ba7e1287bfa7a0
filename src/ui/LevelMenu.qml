import QtQml
import QtQuick

/// The levels that a finding can be given, and the way back to its first.
MenuPanel {
    id: root

    required property var app
    required property string token
    property bool canReset: false
    property bool isNeeded: false

    title: "Etiketi Değiştir"

    // Made when it is opened first: menus are many, and most stay closed.
    onAboutToShow: isNeeded = true

    // Put in by hand: lines that a repeater makes later come after those that are there.
    Instantiator {
        model: root.isNeeded ? root.app.levelChoices : []
        delegate: MenuLine {
            required property var modelData
            objectName: "level-" + modelData.level
            text: modelData.title
            onTriggered: root.app.setLevel(modelData.level, root.token)
        }
        onObjectAdded: (index, line) => root.insertItem(index, line)
        onObjectRemoved: (_, line) => root.removeItem(line)
    }
    MenuRule {
        visible: root.canReset
    }
    MenuLine {
        objectName: "reset"
        visible: root.canReset
        height: visible ? implicitHeight : 0
        text: "İlk etikete dön"
        onTriggered: root.app.resetVerdict(root.token)
    }
}
