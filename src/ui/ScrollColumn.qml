import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// A column that scrolls if its content is too tall.
Flickable {
    id: root

    property real margin: Theme.padding
    property alias spacing: column.spacing
    default property alias content: column.data

    /// Scrolls just enough to show the whole focused item.
    function reveal(item: Item) {
        const top = item.mapToItem(column, 0, 0).y + margin
        if (top < contentY)
            scrollTo(top - margin)
        else if (top + item.height > contentY + height)
            scrollTo(top + item.height + margin - height)
    }

    /// Scrolls to the top and clears mouse grabs and focus.
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

    // Keys that no control in the column has handled.
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
                    // When a focused control disappears, an enclosing item gets the focus. Do not scroll to that.
                    if (item.activeFocusOnTab)
                        root.reveal(item)
                    return
                }
            }
        }
    }
}
