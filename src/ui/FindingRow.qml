import QtQuick
import QtQuick.Layouts

/// A finding in its level's list.
Item {
    id: root

    required property var app
    required property int index
    required property string findingId
    required property string title
    required property string location
    required property string sizeText
    required property real fraction
    required property string icon
    required property string level
    required property string source
    required property string badge
    required property bool isAnalyzing
    required property bool isCleaning
    property bool selected: false
    property bool focused: false

    signal pressed(int modifiers)
    signal menuRequested(point where)

    // Its own four, and four of the list around the highlight.
    implicitHeight: row.implicitHeight + 2 * Math.round((4 + 4) * Theme.u)
    opacity: isCleaning ? 0.5 : 1

    Accessible.role: Accessible.ListItem
    Accessible.name: title + ", " + sizeText + ", " + location + (badge === "" ? "" : ", " + badge)
    Accessible.description: isCleaning ? "Temizleniyor" : isAnalyzing ? "Analiz ediliyor" : ""
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.focused: focused
    Accessible.onPressAction: pressed(Qt.NoModifier)

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusS + 1
        color: root.selected ? Theme.faint(Theme.accent, Theme.dark ? 0.28 : 0.14)
                             : hover.hovered ? Theme.hover : "transparent"
        border.width: root.focused ? 2 : 0
        border.color: Theme.faint(Theme.accent, 0.8)
    }
    RowLayout {
        id: row
        anchors.fill: parent
        anchors.leftMargin: Theme.spaceM
        anchors.rightMargin: Theme.spaceM
        spacing: Theme.spaceM

        Symbol {
            name: root.icon
            color: Theme.secondary
            size: Math.round(20 * Theme.u)
            Layout.preferredWidth: Math.round(24 * Theme.u)
        }
        ColumnLayout {
            spacing: Math.round(3 * Theme.u)
            Layout.fillWidth: true

            // Beside the title where there is room, else below it.
            GridLayout {
                columns: root.width < 28 * Theme.body ? 1 : 4
                columnSpacing: Theme.spaceS
                rowSpacing: Math.round(3 * Theme.u)

                Text {
                    id: titleText
                    text: root.title
                    textFormat: Text.PlainText
                    color: Theme.text
                    font.pixelSize: Theme.body
                    elide: Text.ElideMiddle
                    maximumLineCount: 1
                    Layout.fillWidth: true
                    Layout.maximumWidth: implicitWidth + 1
                }
                Spinner {
                    objectName: "rowSpinner"
                    visible: root.isAnalyzing
                    size: Theme.caption
                }
                SourceBadge {
                    objectName: "rowBadge"
                    visible: !root.isAnalyzing && root.badge !== ""
                    Layout.fillWidth: parent.columns === 1
                    Layout.maximumWidth: Math.ceil(implicitWidth)
                    app: root.app
                    source: root.source
                    badge: root.badge
                }
                Item {
                    visible: parent.columns > 1
                    Layout.fillWidth: true
                }
            }
            Text {
                id: locationText
                text: root.location
                textFormat: Text.PlainText
                color: Theme.secondary
                font.pixelSize: Theme.caption
                elide: Text.ElideMiddle
                maximumLineCount: 1
                Layout.fillWidth: true
            }
        }
        ColumnLayout {
            spacing: Math.round(5 * Theme.u)
            Figures {
                text: root.sizeText
                font.pixelSize: Theme.body
                Layout.alignment: Qt.AlignRight
            }
            SizeBar {
                fraction: root.fraction
                tint: Theme.levelColor(root.level)
                Layout.alignment: Qt.AlignRight
            }
        }
    }
    HoverHandler { id: hover }
    ToolTipText {
        visible: hover.hovered && (titleText.truncated || locationText.truncated)
        text: root.title + "\n" + root.location
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton)
                root.menuRequested(Qt.point(mouse.x, mouse.y))
            else
                root.pressed(mouse.modifiers)
        }
    }
}
