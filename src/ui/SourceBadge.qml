import QtQuick

/// Who gave a verdict, and how sure a model was.
Row {
    id: root

    required property var app
    required property string source
    /// The label, with the confidence where there is one.
    required property string badge

    spacing: Math.round(3 * Theme.u)

    Accessible.role: Accessible.StaticText
    Accessible.name: badge

    Symbol {
        name: root.source === "" ? "" : root.app.sourceInfo(root.source).symbol
        color: Theme.secondary
        size: Theme.caption * 1.1
        anchors.verticalCenter: parent.verticalCenter
    }
    Text {
        text: root.badge
        textFormat: Text.PlainText
        color: Theme.secondary
        font.pixelSize: Theme.caption
        anchors.verticalCenter: parent.verticalCenter
    }
}
