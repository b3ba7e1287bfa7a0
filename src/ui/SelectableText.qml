import QtQuick
import Ulvak.Style

/// Read-only text that can be selected and copied with mouse or keyboard.
TextEdit {
    id: root

    readOnly: true
    selectByMouse: true
    selectByKeyboard: true
    textFormat: TextEdit.PlainText
    horizontalAlignment: TextEdit.AlignLeft  // whatever a name's text direction
    wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
    color: Theme.text
    selectionColor: Theme.faint(Theme.accent, 0.35)
    selectedTextColor: Theme.text
    font.pixelSize: Theme.body
    activeFocusOnTab: true

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.readOnly: true
    Accessible.focusable: true

    onActiveFocusChanged: if (!activeFocus) deselect()

    Rectangle {
        visible: root.activeFocus
        anchors.fill: parent
        anchors.margins: -4
        radius: Theme.radiusS
        color: "transparent"
        border.width: 2
        border.color: Theme.faint(Theme.accent, 0.75)
    }
}
