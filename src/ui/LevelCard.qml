import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// A level and its totals; opens its list.
AbstractButton {
    id: root

    required property int level
    required property string name
    required property string symbol
    required property string color
    required property string title
    required property string sizeText
    required property string countText
    readonly property color tint: Theme.named(color)

    text: title
    padding: Math.round(14 * Theme.u)

    Accessible.name: title + ", " + sizeText
    Accessible.description: countText

    // Top-aligned, however tall the row of cards is.
    contentItem: Item {
        implicitWidth: column.implicitWidth
        implicitHeight: column.implicitHeight

        ColumnLayout {
            id: column
            width: parent.width
            spacing: Theme.spaceS

            RowLayout {
                spacing: Theme.spaceS
                Symbol {
                    name: root.symbol
                    color: root.tint
                    size: Theme.headline * 1.3
                    Layout.alignment: Qt.AlignTop
                }
                Text {
                    text: root.title
                    textFormat: Text.PlainText
                    color: Theme.text
                    font.pixelSize: Theme.headline
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                    Layout.alignment: Qt.AlignTop
                }
                Symbol {
                    name: "chevron.right"
                    color: Theme.tertiary
                    size: Theme.caption
                    Layout.alignment: Qt.AlignTop
                    Layout.topMargin: Math.round(0.25 * Theme.headline)
                }
            }
            Figures {
                text: root.sizeText
                font.pixelSize: Theme.title2
                font.bold: true
            }
            Text {
                id: count
                text: root.countText
                textFormat: Text.PlainText
                color: Theme.secondary
                font.pixelSize: Theme.caption
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
                lineHeight: 1.1
                Layout.fillWidth: true
                Layout.preferredHeight: Math.ceil(metrics.lineSpacing * 1.1) * 3 + 2
                verticalAlignment: Text.AlignTop

                FontMetrics {
                    id: metrics
                    font.pixelSize: Theme.caption
                }
            }
        }
    }

    ToolTip {
        objectName: "cardTip"
        visible: (root.hovered || root.visualFocus) && count.truncated
        text: root.countText
    }

    background: Rectangle {
        radius: Theme.radiusL
        color: Theme.faint(root.tint, root.down ? 0.18 : root.hovered ? 0.13 : 0.08)
        border.width: root.visualFocus ? 2 : 1
        border.color: root.visualFocus ? Theme.accent : Theme.faint(root.tint, 0.25)
        Behavior on color { ColorAnimation { duration: Theme.quick } }
    }
}
