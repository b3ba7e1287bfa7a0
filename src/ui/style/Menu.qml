import QtQuick
import QtQuick.Controls.Basic as Basic
import QtQuick.Templates as T

/// A menu, as wide as its widest item.
T.Menu {
    id: root

    readonly property real widest: {
        let width = 0
        for (let index = 0; index < count; ++index)
            width = Math.max(width, itemAt(index)?.implicitWidth ?? 0)
        return width
    }

    /// Preselects the first item if opened from the keyboard.
    function openBy(keyboard: bool) {
        open()
        currentIndex = keyboard ? 0 : -1
    }

    margins: 0
    padding: Math.round(5 * Theme.u)
    implicitWidth: Math.max(200 * Theme.u, widest + 2 * padding)
    implicitHeight: Math.max(implicitBackgroundHeight + topInset + bottomInset, contentHeight + topPadding + bottomPadding)
    overlap: 2
    cascade: true

    delegate: MenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        model: root.contentModel
        interactive: contentHeight > height
        clip: true
        currentIndex: root.currentIndex

        Basic.ScrollIndicator.vertical: Basic.ScrollIndicator {}
    }

    background: Rectangle {
        radius: Theme.radiusM
        color: Theme.raised
        border.color: Theme.line
    }
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick } }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.quick } }
}
