import QtQuick
import QtQuick.Controls.Basic

/// A menu in the window's own look.
Menu {
    id: root

    property real widest: {
        let width = 0
        for (let index = 0; index < count; ++index)
            width = Math.max(width, itemAt(index)?.implicitWidth ?? 0)
        return width
    }

    /// With its first line chosen where the keyboard opens it.
    function openFromKeyboard(byKeyboard: bool) {
        open()
        currentIndex = byKeyboard ? 0 : -1
    }

    padding: Math.round(5 * Theme.u)
    implicitWidth: Math.max(200 * Theme.u, widest + 2 * padding)
    overlap: 2
    cascade: true

    delegate: MenuLine {}

    background: Rectangle {
        radius: Theme.radiusM
        color: Theme.raised
        border.color: Theme.line
    }
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick } }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.quick } }
}
