import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

/// A column that scrolls when it is taller than its place.
Flickable {
    id: root

    default property alias content: column.data
    property real margin: Theme.padding
    property alias spacing: column.spacing

    contentWidth: width
    contentHeight: column.implicitHeight + 2 * margin
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    /// Scrolls as little as shows all of an item that has the focus.
    function reveal(item: Item) {
        const top = item.mapToItem(column, 0, 0).y + margin
        if (top < contentY)
            contentY = Math.max(0, top - margin)
        else if (top + item.height > contentY + height)
            contentY = Math.min(contentHeight - height, top + item.height + margin - height)
    }

    ScrollBar.vertical: ScrollBar { policy: root.contentHeight > root.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff }

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
                    root.reveal(item)
                    return
                }
            }
        }
    }
}
