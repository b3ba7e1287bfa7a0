import QtQuick
import QtQuick.Layouts

/// Who gave a verdict, and how sure a model was.
RowLayout {
    id: root

    required property var app
    required property string source
    /// The label, with the confidence where there is one.
    required property string badge
    readonly property string label: badge.replace(/ %[0-9]+$/, "")

    spacing: Math.round(3 * Theme.u)

    Accessible.role: Accessible.StaticText
    Accessible.name: badge

    Symbol {
        name: root.source === "" ? "" : root.app.sourceInfo(root.source).symbol
        color: Theme.secondary
        size: Theme.caption * 1.1
        Layout.alignment: Qt.AlignTop
    }
    Text {
        text: root.label
        textFormat: Text.PlainText
        color: Theme.secondary
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Layout.maximumWidth: Math.ceil(implicitWidth)
        Layout.alignment: Qt.AlignTop
    }
    Figures {
        objectName: "confidence"
        visible: text !== ""
        text: root.badge.slice(root.label.length + 1)
        color: Theme.secondary
        font.pixelSize: Theme.caption
        Accessible.ignored: true
        Layout.alignment: Qt.AlignTop
    }
}
