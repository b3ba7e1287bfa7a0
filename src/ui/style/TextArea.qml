import QtQuick
import QtQuick.Templates as T

/// A multi-line plain-text field, as tall as its content.
T.TextArea {
    id: root

    implicitHeight: Math.max(contentHeight, hint.visible ? hint.implicitHeight : 0) + topPadding + bottomPadding
    padding: Theme.spaceS
    leftPadding: padding + 4
    color: Theme.text
    font.pixelSize: Theme.body
    wrapMode: TextEdit.Wrap
    textFormat: TextEdit.PlainText
    selectByMouse: true
    selectionColor: Theme.faint(Theme.accent, 0.35)
    selectedTextColor: Theme.text

    background: Rectangle {
        radius: Theme.radiusS
        color: Theme.raised
        border.width: root.activeFocus ? 2 : 1
        border.color: root.activeFocus ? Theme.accent : root.hovered ? Theme.secondary : Theme.edge
    }

    // Qt's own placeholder would be cut off at the end of the line.
    Text {
        id: hint
        objectName: "placeholder"
        visible: root.length === 0 && root.preeditText === ""
        x: root.leftPadding
        y: root.topPadding
        width: root.width - root.leftPadding - root.rightPadding
        text: root.placeholderText
        textFormat: Text.PlainText
        color: Theme.tertiary
        font: root.font
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
