import QtQuick
import Ulvak
import Ulvak.Style

/// The actions for one finding of a list. Bound to the finding it was opened for, whatever happens to the rows.
Menu {
    id: root

    required property WindowModel app
    property string findingId: ""
    property rowMenuInfo about
    property rowMenuInfo now  ///< updated while the menu is open

    function openFor(finding: string, item: Item, point: point, byKeyboard: bool) {
        findingId = finding
        about = app.list.menuInfo(finding)
        now = about
        if (!about.isThere)
            return
        popup(item, point)
        currentIndex = byKeyboard ? 0 : -1
    }

    objectName: "rowMenu"

    Connections {
        target: root.app.list
        // Nothing here applies to a finding that is gone.
        function onMenuInfoChanged() {
            root.now = root.app.list.menuInfo(root.findingId)
            if (!root.now.isThere)
                root.close()
        }
    }
    Repeater {
        model: root.app.actions.others
        MenuItem {
            required property string name
            required property string title
            objectName: name
            text: title
            onTriggered: root.app.actions.perform(name, root.findingId)
        }
    }
    MenuItem {
        objectName: "analyze"
        visible: root.app.analysis.isAvailable
        text: root.app.analysis.analyzeText
        onTriggered: root.app.analysis.analyze(root.findingId, "")
    }
    LevelMenu {
        objectName: "levelMenu"
        actions: root.app.actions
        findingId: root.findingId
        canReset: root.about.canReset
    }
    MenuSeparator {
        visible: root.about.canTrash
    }
    MenuItem {
        objectName: "trash"
        visible: root.about.canTrash
        enabled: !root.now.isCleaning
        text: "Çöp Kutusuna Taşı"
        onTriggered: root.app.actions.moveToTrash(root.findingId)
    }
}
