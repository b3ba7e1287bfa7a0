import QtQuick
import Ulvak.Style

/// A finding in its level's list.
///
/// A page of rows must be created or refilled within one frame, so anything few rows have (a badge, a spinner, a
/// tooltip) is created on demand, and everything is positioned by hand: layouts would take longer than all the rest.
Item {
    id: root

    required property int index
    required property string findingId
    required property string title
    required property string location
    required property string sizeText
    required property real fraction
    required property string icon
    required property string levelColor
    required property string sourceLabel
    required property string sourceSymbol
    required property string badge
    required property string confidenceText
    required property bool isAnalyzing
    required property bool isCleaning
    required property bool isSelected
    property bool focused: false
    readonly property bool hasMark: isAnalyzing || badge !== ""
    // Beside the title if there is room, else below it.
    readonly property bool isMarkBelow: hasMark && width < 28 * Theme.body
    readonly property real gap: Math.round(3 * Theme.u)
    readonly property real lines: titleText.height + (isMarkBelow ? mark.height + gap : 0) + gap + locationText.height

    signal pressed(int modifiers)
    signal menuRequested(point where)

    // Four of its own, and four of the list around the highlight.
    implicitHeight: lines + 2 * Math.round((4 + 4) * Theme.u)
    opacity: isCleaning ? 0.5 : 1

    Accessible.role: Accessible.ListItem
    Accessible.name: title + ", " + sizeText + ", " + location + (badge === "" ? "" : ", " + badge)
    Accessible.description: isCleaning ? "Temizleniyor" : isAnalyzing ? "Analiz ediliyor" : ""
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focusable: true
    Accessible.focused: focused
    Accessible.onPressAction: pressed(Qt.NoModifier)

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusS + 1
        color: root.isSelected ? Theme.faint(Theme.accent, Theme.dark ? 0.28 : 0.14)
                             : pointer.containsMouse ? Theme.hover : "transparent"
        border.width: root.focused ? 2 : 0
        border.color: Theme.faint(Theme.accent, 0.8)
    }
    Symbol {
        id: symbol
        x: Theme.spaceM
        width: Math.round(24 * Theme.u)
        name: root.icon
        color: Theme.secondary
        size: Math.round(20 * Theme.u)
        anchors.verticalCenter: parent.verticalCenter
    }
    Item {
        id: words
        x: Theme.spaceM + symbol.width + Theme.spaceM
        y: Math.round((root.height - root.lines) / 2)
        width: figures.x - x - Theme.spaceM

        Text {
            id: titleText
            width: Math.min(implicitWidth, words.width - (root.hasMark && !root.isMarkBelow ? mark.width + Theme.spaceS : 0))
            text: root.title
            textFormat: Text.PlainText
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.body
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }
        Loader {
            id: mark
            x: root.isMarkBelow ? 0 : Math.ceil(titleText.width) + Theme.spaceS
            y: Math.round(root.isMarkBelow ? titleText.height + root.gap : (titleText.height - height) / 2)
            width: Math.min(implicitWidth, words.width)
            active: root.hasMark
            sourceComponent: root.isAnalyzing ? busyMark : sourceMark
        }
        Text {
            id: locationText
            y: root.lines - height
            width: words.width
            text: root.location
            textFormat: Text.PlainText
            horizontalAlignment: Text.AlignLeft
            color: Theme.secondary
            font.pixelSize: Theme.caption
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }
    }
    Item {
        id: figures
        readonly property real gap: Math.round(5 * Theme.u)
        x: root.width - Theme.spaceM - width
        y: Math.round((root.height - height) / 2)
        width: Math.max(amount.width, bar.width)
        height: amount.height + gap + bar.height

        Figures {
            id: amount
            x: parent.width - width
            text: root.sizeText
            font.pixelSize: Theme.body
        }
        SizeBar {
            id: bar
            x: parent.width - width
            y: amount.height + figures.gap
            fraction: root.fraction
            tint: Theme.named(root.levelColor)
        }
    }
    MouseArea {
        id: pointer
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        hoverEnabled: true
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton)
                root.menuRequested(Qt.point(mouse.x, mouse.y))
            else
                root.pressed(mouse.modifiers)
        }
    }
    Loader {
        anchors.fill: parent
        active: pointer.containsMouse && (titleText.truncated || locationText.truncated)
        sourceComponent: Item {
            ToolTip {
                visible: true
                text: root.title + "\n" + root.location
            }
        }
    }

    Component {
        id: busyMark
        BusyIndicator {
            objectName: "rowSpinner"
            size: Theme.caption
        }
    }
    Component {
        id: sourceMark
        SourceBadge {
            objectName: "rowBadge"
            symbol: root.sourceSymbol
            label: root.sourceLabel
            badge: root.badge
            confidenceText: root.confidenceText
        }
    }
}
