import QtQuick
import Ulvak

/// What can be done with one finding of a list. Bound to the finding it was opened for, whatever the rows do.
MenuPanel {
    id: root

    required property WindowModel app
    property string token: ""
    property rowMenuInfo about
    property rowMenuInfo now  ///< the same while the menu is open

    function openFor(finding: string, item: Item, point: point, byKeyboard: bool) {
        token = finding
        about = app.menuInfo(finding)
        now = about
        if (!about.isThere)
            return
        popup(item, point)
        currentIndex = byKeyboard ? 0 : -1
    }

    objectName: "rowMenu"

    Connections {
        target: root.app
        function onCleaningChanged() { root.now = root.app.menuInfo(root.token) }
        // Nothing here would do anything for a finding that has gone.
        function onFindingsChanged() {
            root.now = root.app.menuInfo(root.token)
            if (!root.now.isThere)
                root.close()
        }
    }
    Repeater {
        model: root.app.actions
        MenuLine {
            required property string name
            required property string title
            objectName: name
            text: title
            onTriggered: root.app.perform(name, root.token)
        }
    }
    MenuLine {
        objectName: "analyze"
        visible: root.app.isModelAvailable
        height: visible ? implicitHeight : 0
        text: "Apple Intelligence ile Analiz Et"
        onTriggered: root.app.analyze(root.token, "")
    }
    LevelMenu {
        objectName: "levelMenu"
        app: root.app
        token: root.token
        canReset: root.about.canReset
    }
    MenuRule {
        visible: root.about.canTrash
    }
    MenuLine {
        objectName: "trash"
        visible: root.about.canTrash
        height: visible ? implicitHeight : 0
        enabled: !root.now.isCleaning
        text: "Çöp Kutusuna Taşı"
        onTriggered: root.app.moveToTrash(root.token)
    }
}
