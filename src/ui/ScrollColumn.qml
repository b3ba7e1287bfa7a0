import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// A column that scrolls when it is taller than its place.
Flickable {
    id: root

    property real margin: Theme.padding
    property alias spacing: column.spacing
    default property alias content: column.data

    /// Scrolls as little as shows all of an item that has the focus.
    function reveal(item: Item) {
        const top = item.mapToItem(column, 0, 0).y + margin
        if (top < contentY)
            scrollTo(top - margin)
        else if (top + item.height > contentY + height)
            scrollTo(top + item.height + margin - height)
    }

    /// At its top, and with nothing held by the mouse or the keyboard.
    function startOver() {
        enabled = false
        enabled = true
        contentY = 0
    }

    function scrollTo(y: real) {
        contentY = Math.max(0, Math.min(y, contentHeight - height))
    }

    implicitWidth: column.implicitWidth + 2 * margin
    contentWidth: width
    contentHeight: column.implicitHeight + 2 * margin
    boundsBehavior: Flickable.StopAtBounds
    pixelAligned: true
    clip: true

    // What no control in the column has taken.
    Keys.onPressed: event => {
        const line = 3 * Theme.controlHeight
        const page = 0.9 * height
        switch (event.key) {
        case Qt.Key_Down: scrollTo(contentY + line); break
        case Qt.Key_Up: scrollTo(contentY - line); break
        case Qt.Key_PageDown: scrollTo(contentY + page); break
        case Qt.Key_PageUp: scrollTo(contentY - page); break
        case Qt.Key_Home: scrollTo(0); break
        case Qt.Key_End: scrollTo(contentHeight); break
        default: return
        }
        event.accepted = true
    }

    ScrollBar.vertical: ScrollBar {}

    ColumnLayout {
        id: column
        x: root.margin
        y: root.margin
        width: root.width - 2 * root.margin
    }

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            const item = root.Window.activeFocusItem
            for (let parent = item; parent; parent = parent.parent) {
                if (parent === column) {
                    // What is around a control has the focus once the control has gone. Nobody went there.
                    if (item.activeFocusOnTab)
                        root.reveal(item)
                    return
                }
            }
        }
    }
}
