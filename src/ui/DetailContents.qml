import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The finding's contents, largest first.
ColumnLayout {
    id: root

    required property DetailModel detail

    spacing: Theme.spaceS

    PlainText {
        objectName: "contentsTitle"
        text: root.detail.contentsTitle
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Column {
        spacing: root.spacing
        Layout.fillWidth: true

        Repeater {
            model: root.detail.contents

            RowLayout {
                id: line
                required property string symbol
                required property string name
                required property string location
                required property string sizeText
                width: parent.width
                spacing: Theme.spaceM

                Accessible.role: Accessible.StaticText
                Accessible.name: name + ", " + sizeText

                Symbol {
                    name: line.symbol
                    color: Theme.secondary
                    size: Theme.body * 1.15
                }
                Text {
                    id: label
                    text: line.name
                    textFormat: Text.PlainText
                    horizontalAlignment: Text.AlignLeft
                    color: Theme.text
                    font.pixelSize: Theme.body
                    elide: Text.ElideMiddle
                    Layout.fillWidth: true

                    HoverHandler { id: hover }
                    Loader {
                        anchors.fill: parent
                        active: hover.hovered && label.truncated
                        sourceComponent: Item {
                            ToolTip {
                                visible: true
                                text: line.location
                            }
                        }
                    }
                }
                Figures {
                    text: line.sizeText
                    color: Theme.secondary
                    font.pixelSize: Theme.body
                }
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
