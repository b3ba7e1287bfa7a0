import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The finding's location, modification date and file count.
Column {
    id: root

    required property DetailModel detail
    /// Width of the widest label.
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
