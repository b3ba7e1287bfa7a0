import QtQuick
import QtQuick.Layouts
import Ulvak

/// Why the language model is not available; nothing when it is.
RowLayout {
    id: root

    required property WindowModel app

    visible: app.modelMessage !== ""
    spacing: Theme.spaceS

    Symbol {
        name: "apple.intelligence"
        color: Theme.secondary
        size: Theme.callout * 1.3
        Layout.alignment: Qt.AlignTop
    }
    PlainText {
        objectName: "modelMessage"
        text: root.app.modelMessage
        color: Theme.secondary
        font.pixelSize: Theme.callout
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Accessible.description: root.app.modelHint

        HoverHandler { id: hover }
        ToolTipText {
            objectName: "modelHint"
            visible: hover.hovered && root.app.modelHint !== ""
            text: root.app.modelHint
        }
    }
}
