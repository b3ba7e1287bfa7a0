import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// Where the finding is, when it changed and how many files it holds.
Column {
    id: root

    required property DetailModel detail
    /// The widest label's.
    property real labelWidth: 0

    spacing: Theme.spaceS

    Repeater {
        model: root.detail.metadata

        RowLayout {
            id: line
            required property string label
            required property string value
            width: parent.width
            spacing: Theme.spaceL

            Text {
                text: line.label
                color: Theme.secondary
                font.pixelSize: Theme.callout
                Accessible.ignored: true
                onImplicitWidthChanged: root.labelWidth = Math.max(root.labelWidth, implicitWidth)
                Layout.preferredWidth: root.labelWidth
                Layout.alignment: Qt.AlignTop
            }
            SelectableText {
                text: line.value
                font.pixelSize: Theme.callout
                Accessible.name: line.label + ": " + text
                Layout.fillWidth: true
            }
        }
    }
}
