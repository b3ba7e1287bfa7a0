import QtQuick

/// A text that can be selected and copied, and not changed.
TextEdit {
    readOnly: true
    selectByMouse: true
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    color: Theme.text
    selectionColor: Theme.faint(Theme.accent, 0.35)
    selectedTextColor: Theme.text
    font.pixelSize: Theme.body
    activeFocusOnTab: false

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.readOnly: true
}
