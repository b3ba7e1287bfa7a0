import QtQuick
import QtQuick.Layouts

/// Where the finding is, when it changed and how many files it holds.
GridLayout {
    id: root

    required property var detail

    columns: 2
    columnSpacing: Theme.spaceL
    rowSpacing: Theme.spaceS

    Repeater {
        model: root.detail.metadata

        Text {
            required property var modelData
            required property int index
            text: modelData.label
            color: Theme.secondary
            font.pixelSize: Theme.callout
            Accessible.ignored: true
            Layout.row: index
            Layout.column: 0
            Layout.alignment: Qt.AlignTop
        }
    }
    Repeater {
        model: root.detail.metadata

        SelectableText {
            required property var modelData
            required property int index
            text: modelData.value
            font.pixelSize: Theme.callout
            Accessible.name: modelData.label + ": " + text
            Layout.row: index
            Layout.column: 1
            Layout.fillWidth: true
        }
    }
}
