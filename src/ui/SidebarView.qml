import QtQuick
import QtQuick.Layouts

/// What to look at: the summary, or one level. The disk's space at the bottom.
FocusScope {
    id: root

    required property var app
    readonly property var levels: app.levels
    readonly property var items: {
        const names = levels.map(level => level.level)
        names.unshift("overview")
        return names
    }
    /// Enough for every row to stay on one line.
    readonly property real wholeWidth: list.implicitWidth
    readonly property int current: items.indexOf(app.sidebar)

    function choose(item: string) {
        forceActiveFocus(Qt.MouseFocusReason)
        app.sidebar = item
    }

    function step(by: int) {
        app.sidebar = items[Math.max(0, Math.min(items.length - 1, current + by))]
    }

    objectName: "sidebar"
    activeFocusOnTab: true

    Accessible.role: Accessible.List
    Accessible.name: "Etiketler"

    Keys.onDownPressed: step(1)
    Keys.onUpPressed: step(-1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            root.app.sidebar = root.items[0]
        else if (event.key === Qt.Key_End)
            root.app.sidebar = root.items[root.items.length - 1]
        else if (event.key === Qt.Key_Space && event.modifiers & Qt.ControlModifier)
            root.app.sidebar = ""
        else
            return
        event.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.side
    }
    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        ScrollColumn {
            id: list
            activeFocusOnTab: false
            margin: Theme.spaceS
            spacing: Math.round(2 * Theme.u)
            Layout.fillWidth: true
            Layout.fillHeight: true

            SidebarRow {
                objectName: "row-overview"
                item: "overview"
                symbol: "internaldrive"
                title: "Özet"
                selected: root.app.sidebar === "overview"
                focused: (selected || root.current < 0) && root.activeFocus && root.Window.active
                onSelectedChanged: if (selected) list.reveal(this)
                onChosen: root.choose("overview")
                onUnchosen: root.choose("")
                Layout.fillWidth: true
            }
            PlainText {
                text: "Etiketler"
                color: Theme.secondary
                font.pixelSize: Theme.caption
                font.weight: Font.DemiBold
                Layout.topMargin: Theme.spaceL
                Layout.leftMargin: Math.round(8 * Theme.u)
                Layout.bottomMargin: Math.round(4 * Theme.u)
            }
            Repeater {
                model: root.levels.length

                SidebarRow {
                    required property int index
                    readonly property var about: root.levels[index]
                    objectName: "row-" + item
                    item: about.level
                    symbol: about.symbol
                    tint: Theme.named(about.color)
                    title: about.title
                    trailing: root.app.phase === "done" ? about.sizeText : ""
                    selected: root.app.sidebar === item
                    focused: selected && root.activeFocus && root.Window.active
                    onSelectedChanged: if (selected) list.reveal(this)
                    onChosen: root.choose(item)
                    onUnchosen: root.choose("")
                    Layout.fillWidth: true
                }
            }
        }
        ColumnLayout {
            objectName: "diskBlock"
            visible: root.app.hasDisk
            spacing: Math.round(6 * Theme.u)
            Layout.fillWidth: true
            Layout.margins: Math.round(12 * Theme.u)

            ProgressLine {
                objectName: "diskProgress"
                value: root.app.usedFraction
                tint: root.app.isDiskLow ? Theme.red : Theme.accent
                Accessible.name: "Kullanılan alan"
                Layout.fillWidth: true
            }
            PlainText {
                objectName: "diskText"
                text: root.app.diskText
                color: Theme.secondary
                font.pixelSize: Theme.caption
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
        }
    }
}
