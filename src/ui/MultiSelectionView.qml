import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// Several findings: their totals, and one button for all of them.
ScrollColumn {
    id: root

    required property MultiSelectionModel several

    function pressMain() {
        if (clean.enabled)
            clean.activate()
    }

    /// Nothing begun with one selection may carry over to the next.
    function forget() {
        startOver()
        confirm.close()
    }

    objectName: "multiSelection"
    spacing: Theme.spaceL

    PlainText {
        objectName: "severalCount"
        text: root.several.countText
        font.pixelSize: Theme.title2
        font.bold: true
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    PlainText {
        objectName: "severalTotal"
        text: root.several.totalText
        font.pixelSize: Math.round(30 * Theme.u)
        font.weight: Font.DemiBold
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.title2
        Layout.fillWidth: true
    }
    Column {
        spacing: Theme.spaceS
        Layout.fillWidth: true

        Repeater {
            model: root.several.levels
            RowLayout {
                id: line
                required property levelInfo about
                required property int number
                objectName: "count-" + about.name
                width: Math.min(implicitWidth, parent.width)
                spacing: Theme.spaceM
                LevelBadge {
                    Layout.fillWidth: true
                    Layout.maximumWidth: Math.ceil(implicitWidth)
                    about: line.about
                }
                Figures {
                    objectName: "number"
                    text: line.number
                    color: Theme.text
                    font.pixelSize: Theme.body
                }
            }
        }
    }
    PlainText {
        objectName: "skipped"
        visible: text !== ""
        text: root.several.skippedText
        color: Theme.secondary
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
    Button {
        id: clean
        objectName: "cleanSeveral"
        enabled: root.several.canClean && !root.several.isCleaning
        busy: root.several.isCleaning
        activatesOnReturn: !root.several.deletesForGood
        text: "Seçilenleri Temizle"
        icon.source: "image://symbols/trash"
        highlighted: true
        Layout.maximumWidth: parent.width
        onClicked: root.several.asksFirst ? confirm.ask() : root.several.clean()
    }

    ConfirmDialog {
        id: confirm
        /// Remembers what is shown: only that is cleaned, whatever is selected by then.
        function ask() {
            root.several.ask()
            message = root.several.warning
            confirmText = root.several.cleanText
            open()
        }
        objectName: "confirmSeveral"
        title: "Seçilenler temizlensin mi?"
        message: ""
        confirmText: ""
        destructive: true
        onAccepted: root.several.cleanAsked()
    }
}
