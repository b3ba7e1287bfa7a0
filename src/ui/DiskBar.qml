import QtQuick
import QtQuick.Layouts

/// The disk as a bar: what each level holds, what nobody explains, what is free.
ColumnLayout {
    id: root

    /// Of `level`, empty for what no finding explains, and `fraction` of the disk.
    required property var segments
    required property string usedText
    required property string freeText
    required property bool isLow

    spacing: Theme.spaceS

    Accessible.role: Accessible.Graphic
    Accessible.name: usedText + ", " + freeText

    Rectangle {
        id: bar
        Layout.fillWidth: true
        implicitHeight: Math.round(18 * Theme.u)
        radius: Theme.radiusS
        color: Theme.fill
        clip: true

        Row {
            id: row
            anchors.fill: parent
            spacing: 1

            Repeater {
                model: root.segments

                Rectangle {
                    required property var modelData
                    required property int index
                    readonly property color tint: Theme.levelColor(modelData.level)

                    objectName: "segment-" + modelData.level
                    visible: modelData.fraction > 0
                    width: Math.max(0, bar.width * modelData.fraction)
                    height: row.height
                    color: modelData.level === "" ? Theme.faint(Theme.secondary, 0.35) : tint
                    radius: x === 0 ? Theme.radiusS : 0

                    Rectangle {
                        visible: parent.modelData.level !== ""
                        anchors.fill: parent
                        radius: parent.radius
                        gradient: Gradient {
                            GradientStop { position: 0; color: Qt.rgba(1, 1, 1, 0.22) }
                            GradientStop { position: 1; color: Qt.rgba(1, 1, 1, 0) }
                        }
                    }
                }
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        Text {
            text: root.usedText
            textFormat: Text.PlainText
            color: Theme.secondary
            font.pixelSize: Theme.caption
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        Text {
            objectName: "free"
            text: root.freeText
            textFormat: Text.PlainText
            color: root.isLow ? Theme.red : Theme.secondary
            font.pixelSize: Theme.caption
        }
    }
}
