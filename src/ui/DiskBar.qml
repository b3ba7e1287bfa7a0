import QtQuick
import QtQuick.Layouts

/// The disk as a bar: what each level holds, what nobody explains, what is free.
ColumnLayout {
    id: root

    /// Of `level` and `color`, both empty for what no finding explains, and `fraction` of the disk.
    required property var segments
    required property string usedText
    required property string freeText
    required property bool isLow
    /// What the bar lies on.
    property color surface: Theme.window

    // Where each part ends: at whole units, or what is between two could be lost.
    readonly property var ends: {
        let sum = 0
        return segments.map(segment => {
            sum += Math.max(0, segment.fraction)
            return Math.round(bar.width * sum)
        })
    }

    spacing: Theme.spaceS

    Accessible.role: Accessible.Graphic
    Accessible.name: usedText + ", " + freeText

    Rectangle {
        id: bar
        Layout.fillWidth: true
        implicitHeight: Math.round(18 * Theme.u)
        color: Theme.fill

        Row {
            id: row
            anchors.fill: parent
            clip: true  // what the findings add up to may be more than the disk holds
            spacing: 1

            Repeater {
                model: root.segments.length

                Rectangle {
                    id: part
                    required property int index
                    readonly property var segment: root.segments[index] ?? ({ level: "", color: "", fraction: 0 })
                    readonly property bool isOther: segment.level === ""
                    readonly property color tint: isOther ? Theme.faint(Theme.secondary, 0.35) : Theme.named(segment.color)

                    objectName: "segment-" + (isOther ? "other" : segment.level)
                    visible: segment.fraction > 0
                    width: (root.ends[index] ?? 0) - (root.ends[index - 1] ?? 0)
                    height: row.height
                    gradient: Gradient {
                        GradientStop { position: 0; color: part.isOther ? part.tint : Qt.lighter(part.tint, Theme.dark ? 1.1 : 1.3) }
                        GradientStop { position: 1; color: part.tint }
                    }
                }
            }
        }
        // Rounds the corners of whatever lies at the ends.
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
            text: root.usedText
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
            text: root.freeText
            textFormat: Text.PlainText
            color: root.isLow ? Theme.red : Theme.secondary
            font.pixelSize: Theme.caption
        }
    }
}
