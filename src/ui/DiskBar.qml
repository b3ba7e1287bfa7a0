import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The disk as a bar: each level, unexplained space, free space.
ColumnLayout {
    id: root

    required property DiskModel disk
    /// The colour of the surface below the bar.
    property color surface: Theme.window

    spacing: Theme.spaceS

    Accessible.role: Accessible.Graphic
    Accessible.name: disk.usedText + ", " + disk.freeText

    Rectangle {
        id: bar
        Layout.fillWidth: true
        implicitHeight: Math.round(18 * Theme.u)
        color: Theme.fill

        Row {
            id: row
            anchors.fill: parent
            clip: true  // the findings may add up to more than the disk holds
            spacing: 1

            Repeater {
                model: root.disk.segments

                Rectangle {
                    id: part
                    required property string levelName
                    required property string levelColor
                    required property real fraction
                    required property real begin
                    required property real end
                    readonly property bool isOther: levelName === ""
                    readonly property color tint: isOther ? Theme.faint(Theme.secondary, 0.35) : Theme.named(levelColor)

                    objectName: "segment-" + (isOther ? "other" : levelName)
                    visible: fraction > 0
                    // Rounds the edges rather than the widths, so that no gaps appear between segments.
                    width: Math.round(bar.width * end) - Math.round(bar.width * begin)
                    height: row.height
                    gradient: Gradient {
                        GradientStop { position: 0; color: part.isOther ? part.tint : Qt.lighter(part.tint, Theme.dark ? 1.1 : 1.3) }
                        GradientStop { position: 1; color: part.tint }
                    }
                }
            }
        }
        // Rounds the bar's corners, whatever segments lie at the ends.
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: Theme.radiusS + 3
            color: "transparent"
            border.width: 3
            border.color: root.surface
        }
    }
    RowLayout {
        Layout.fillWidth: true
        Text {
            objectName: "used"
            text: root.disk.usedText
            textFormat: Text.PlainText
            color: Theme.secondary
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
        }
        Text {
            objectName: "free"
            Layout.alignment: Qt.AlignTop
            text: root.disk.freeText
            textFormat: Text.PlainText
            color: root.disk.isLow ? Theme.red : Theme.secondary
            font.pixelSize: Theme.caption
        }
    }
}
