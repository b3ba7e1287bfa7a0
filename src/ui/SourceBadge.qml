import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// The source of a verdict, and how sure a model was.
RowLayout {
    id: root

    required property string symbol
    required property string label
    /// The full text.
    required property string badge
    /// The end of `badge` that says how sure the model was; may be empty.
    required property string confidenceText

    spacing: Math.round(3 * Theme.u)

    Accessible.role: Accessible.StaticText
    Accessible.name: badge

    Symbol {
        name: root.symbol
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
        text: root.confidenceText
        color: Theme.secondary
        font.pixelSize: Theme.caption
        Accessible.ignored: true
        Layout.alignment: Qt.AlignTop
    }
}
