import QtQuick
import QtQuick.Layouts

/// What lies in the finding, largest first.
ColumnLayout {
    id: root

    required property var detail

    spacing: Theme.spaceS

    PlainText {
        objectName: "contentsTitle"
        text: root.detail.contentsTitle
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Repeater {
        model: root.detail.contents

        RowLayout {
            id: line
            required property var modelData
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
                color: Theme.text
                font.pixelSize: Theme.body
                elide: Text.ElideMiddle
                Layout.fillWidth: true

                HoverHandler { id: hover }
                ToolTipText {
                    visible: hover.hovered && name.truncated
                    text: line.modelData.name
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
