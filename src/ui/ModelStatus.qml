import QtQuick
import QtQuick.Layouts

/// Why the language model is not available; nothing when it is.
RowLayout {
    id: root

    required property var app

    visible: app.modelMessage !== ""
    spacing: Theme.spaceS

    Symbol {
        name: "apple.intelligence"
        color: Theme.secondary
        size: Theme.callout * 1.3
        Layout.alignment: Qt.AlignTop
    }
    Text {
        objectName: "modelMessage"
        text: root.app.modelMessage
        textFormat: Text.PlainText
        color: Theme.secondary
        font.pixelSize: Theme.callout
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}
