import QtQuick
import Ulvak
import Ulvak.Style

/// The rows of a list of findings, with mouse and keyboard selection.
ListView {
    id: root

    required property WindowModel app
    property string typed: ""
    readonly property FindingSelection selection: app.list.selection

    signal deleteRequested()

    function rowsOnPage(): int {
        const first = itemAtIndex(Math.max(0, indexAt(0, contentY + 1)))
        return Math.max(1, Math.floor(height / (first?.height ?? height)) - 1)
    }

    function goTo(row: int, modifiers: int) {
        selection.moveTo(row, modifiers)
        if (selection.currentRow === 0)
            positionViewAtBeginning()  // including the header
        else
            positionViewAtIndex(selection.currentRow, ListView.Contain)
    }

    function openMenu() {
        const row = selection.currentRow
        if (row >= 0) {
            selection.pressForMenu(row)
            positionViewAtIndex(row, ListView.Contain)
        }
        const item = row < 0 ? null : itemAtIndex(row) as FindingRow
        if (item)
            menu.openFor(item.findingId, item, Qt.point(Math.round(item.width / 3), item.height), true)
    }

    function type(letters: string) {
        typed += letters
        typing.restart()
        const row = app.list.rowBeginning(typed, selection.currentRow + (typed.length > 1 ? 0 : 1))
        if (row >= 0)
            goTo(row, Qt.NoModifier)
    }

    objectName: "rows"
    model: app.list.rows
    clip: true
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    pixelAligned: true
    leftMargin: Theme.spaceM
    rightMargin: Theme.spaceM
    bottomMargin: Theme.spaceM
    spacing: 1
    cacheBuffer: 0
    reuseItems: true
    currentIndex: -1

    Accessible.role: Accessible.List
    Accessible.name: app.list.title

    Keys.onPressed: event => {
        const current = Math.max(0, root.selection.currentRow)
        const none = root.selection.currentRow < 0
        let used = true
        switch (event.key) {
        case Qt.Key_Down: root.goTo(none ? 0 : current + 1, event.modifiers); break
        case Qt.Key_Up: root.goTo(none ? root.count - 1 : current - 1, event.modifiers); break
        case Qt.Key_PageDown: root.goTo(current + root.rowsOnPage(), event.modifiers); break
        case Qt.Key_PageUp: root.goTo(current - root.rowsOnPage(), event.modifiers); break
        case Qt.Key_Home: root.goTo(0, event.modifiers); break
        case Qt.Key_End: root.goTo(root.count - 1, event.modifiers); break
        case Qt.Key_Escape: root.selection.clear(); break
        case Qt.Key_Delete: root.deleteRequested(); break
        case Qt.Key_Menu: root.openMenu(); break
        case Qt.Key_F10: event.modifiers & Qt.ShiftModifier ? root.openMenu() : used = false; break
        case Qt.Key_Space:
            if (event.modifiers & Qt.ControlModifier)
                root.selection.toggleCurrent()
            else if (root.typed !== "")
                root.type(" ")
            else
                root.goTo(current, Qt.NoModifier)
            break
        default:
            if (event.matches(StandardKey.SelectAll))
                root.selection.selectAll()
            else if (event.text > " " && event.text !== "\x7f" && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)))
                root.type(event.text)
            else
                used = false
        }
        event.accepted = used
    }

    header: PlainText {
        width: ListView.view ? ListView.view.width - 2 * Theme.spaceM : implicitWidth
        text: root.app.list.about.summary
        color: Theme.secondary
        font.pixelSize: Theme.callout
        wrapMode: Text.Wrap
        padding: Math.round(4 * Theme.u)
        leftPadding: Theme.spaceM
        bottomPadding: Theme.spaceM
        onHeightChanged: if (root.contentY <= 0) Qt.callLater(root.positionViewAtBeginning)
    }
    delegate: FindingRow {
        id: line

        width: ListView.view.width - 2 * Theme.spaceM
        focused: root.activeFocus && root.Window.active && root.selection.currentRow === index

        // Pooled for another finding: until reused, a screen reader must not see the old one.
        ListView.onPooled: visible = false
        ListView.onReused: visible = true

        onPressed: modifiers => {
            root.forceActiveFocus(Qt.MouseFocusReason)
            root.selection.press(index, modifiers)
        }
        onMenuRequested: where => {
            root.forceActiveFocus(Qt.MouseFocusReason)
            root.selection.pressForMenu(index)
            menu.openFor(findingId, line, where, false)
        }
    }

    ScrollBar.vertical: ScrollBar {}

    Timer {
        id: typing
        interval: 900
        onTriggered: root.typed = ""
    }
    RowMenu {
        id: menu
        app: root.app
    }
}
