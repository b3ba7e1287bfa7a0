import QtQuick
import QtQuick.Templates as T

/// A modal dialog centred in the window, which is dimmed meanwhile.
T.Dialog {
    id: root

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(420 * Theme.u, (parent?.width ?? 480) - 2 * Theme.padding)
    implicitHeight: Math.max(implicitBackgroundHeight + topInset + bottomInset, contentHeight + topPadding + bottomPadding)
    padding: Theme.padding
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape

    background: Rectangle {
        radius: Theme.radiusL
        color: Theme.raised
        border.color: Theme.line
    }
    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
        NumberAnimation { property: "scale"; from: 0.97; to: 1; duration: Theme.quick }
    }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.quick } }
}
