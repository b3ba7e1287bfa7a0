import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// Why the language model is unavailable; hidden if it is available.
RowLayout {
    id: root

    required property AnalysisModel analysis

    visible: analysis.message !== ""
    spacing: Theme.spaceS

    Symbol {
        name: "apple.intelligence"
        color: Theme.secondary
        size: Theme.callout * 1.3
        Layout.alignment: Qt.AlignTop
    }
    PlainText {
        objectName: "modelMessage"
        text: root.analysis.message
        color: Theme.secondary
        font.pixelSize: Theme.callout
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Accessible.description: root.analysis.hint

        HoverHandler { id: hover }
        ToolTip {
            objectName: "modelHint"
            visible: hover.hovered && root.analysis.hint !== ""
            text: root.analysis.hint
        }
    }
}
