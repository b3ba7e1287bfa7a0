import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// One of the largest findings; opens its level's list.
AbstractButton {
    id: root

    required property int level
    required property string levelColor
    required property string symbol
    required property string title
    required property string sizeText
    required property string location
    property bool isLast: false

    text: title
    implicitHeight: Math.round(36 * Theme.u)

    Accessible.name: text + ", " + sizeText

    contentItem: RowLayout {
        spacing: Theme.spaceM

        Symbol {
            name: root.symbol
            color: Theme.named(root.levelColor)
            size: Theme.body * 1.25
        }
        Text {
            text: root.text
            textFormat: Text.PlainText
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.body
            elide: Text.ElideMiddle
            Layout.fillWidth: true
        }
        Figures {
            text: root.sizeText
            color: Theme.secondary
            font.pixelSize: Theme.body
        }
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: -Theme.spaceS
            anchors.rightMargin: -Theme.spaceS
            radius: Theme.radiusS
            color: root.down ? Theme.press : root.hovered ? Theme.hover : "transparent"
            border.width: root.visualFocus ? 2 : 0
            border.color: Theme.accent
        }
        Rectangle {
            visible: !root.isLast
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }

    ToolTip {
        objectName: "largestTip"
        visible: root.hovered || root.visualFocus
        text: root.text + "\n" + root.location
    }
}
