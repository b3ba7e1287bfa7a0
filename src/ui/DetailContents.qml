import QtQuick
import QtQuick.Layouts

/// What lies in the finding, largest first.
ColumnLayout {
    id: root

    required property var detail
    readonly property var lines: detail.contents

    spacing: Theme.spaceS

    PlainText {
        objectName: "contentsTitle"
        text: root.detail.contentsTitle
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Repeater {
        model: root.lines.length

        RowLayout {
            id: line
            required property int index
            readonly property var modelData: root.lines[index] ?? { name: "", symbol: "", sizeText: "", location: "" }
            spacing: Theme.spaceM
            Layout.fillWidth: true

            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.name + ", " + modelData.sizeText

            Symbol {
                name: line.modelData.symbol
                color: Theme.secondary
                size: Theme.body * 1.15
            }
            Text {
                id: name
                text: line.modelData.name
                textFormat: Text.PlainText
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
                elide: Text.ElideMiddle
                Layout.fillWidth: true

                HoverHandler { id: hover }
                Loader {
                    anchors.fill: parent
                    active: hover.hovered && name.truncated
                    sourceComponent: Item {
                        ToolTipText {
                            visible: true
                            text: line.modelData.location
                        }
                    }
                }
            }
            Figures {
                text: line.modelData.sizeText
                color: Theme.secondary
                font.pixelSize: Theme.body
            }
        }
    }
    PlainText {
        objectName: "moreContents"
        visible: text !== ""
        text: root.detail.moreContents
        color: Theme.secondary
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}
