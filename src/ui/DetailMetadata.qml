import QtQuick
import QtQuick.Layouts
import Ulvak

/// Where the finding is, when it changed and how many files it holds.
GridLayout {
    id: root

    required property DetailModel detail

    columns: 2
    columnSpacing: Theme.spaceL
    rowSpacing: Theme.spaceS

    Repeater {
        model: root.detail.metadata

        Text {
            required property string label
            required property int index
            text: label
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
            required property string label
            required property string value
            required property int index
            text: value
            font.pixelSize: Theme.callout
            Accessible.name: label + ": " + text
            Layout.row: index
            Layout.column: 1
            Layout.fillWidth: true
        }
    }
}
