import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The language model's view of the finding, and a note for it. Holds the focus itself while its button waits for an
/// answer.
Rectangle {
    id: root

    required property DetailModel detail
    required property AnalysisModel analysis

    function forget() {
        note.text = ""  // also clears the undo history
    }

    objectName: "modelSection"
    implicitHeight: column.implicitHeight + 2 * Math.round(14 * Theme.u)
    radius: Theme.radiusM
    color: Theme.faint(Theme.purple, 0.06)
    border.width: activeFocus ? 2 : 1
    border.color: activeFocus ? Theme.accent : Theme.faint(Theme.purple, 0.2)

    Accessible.role: Accessible.Grouping
    Accessible.name: root.analysis.modelName

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Math.round(14 * Theme.u)
        spacing: Theme.spaceM

        RowLayout {
            spacing: Theme.spaceS
            Layout.fillWidth: true
            Symbol {
                name: "apple.intelligence"
                color: Theme.purple
                size: Theme.body * 1.25
                Layout.alignment: Qt.AlignTop
            }
            Text {
                text: root.analysis.modelName
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
        }
        PlainText {
            objectName: "sectionText"
            text: root.analysis.isAvailable
                  ? root.analysis.modelName + " bu klasörün içeriğine, dosya türlerine, tarihlerine ve hangi uygulamaya ait olduğuna bakıp bir yorum yapar. Her şey cihazında işlenir."
                  : root.analysis.message
            color: Theme.secondary
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            lineHeight: 1.15
            Layout.fillWidth: true
        }
        TextArea {
            id: note
            objectName: "note"
            visible: root.analysis.isAvailable
            placeholderText: "Bildiğin bir şey var mı? Ör. \"bench benim test çıktılarım\""
            Layout.fillWidth: true

            Accessible.name: "Not"
            Accessible.description: placeholderText

            // A note has no tabs: Tab moves the focus. Return inserts a line break; Ctrl+Return asks.
            Keys.priority: Keys.BeforeItem
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            Keys.onReturnPressed: event => {
                event.accepted = (event.modifiers & Qt.ControlModifier) !== 0
                if (event.accepted && ask.enabled)
                    ask.activate()
            }
        }
        Button {
            id: ask
            property int pressedBy: Qt.TabFocusReason
            objectName: "analyze"
            visible: root.analysis.isAvailable
            enabled: !root.detail.isAnalyzing
            busy: root.detail.isAnalyzing
            text: root.detail.analyzeText
            Layout.maximumWidth: column.width
            // Qt takes the focus from a disabled control and leaves it with an enclosing scope.
            onEnabledChanged: {
                if (enabled && root.activeFocus)
                    forceActiveFocus(pressedBy)
                for (let around = enabled || !focus ? null : root.parent; around; around = around.parent) {
                    if (around === Window.activeFocusItem)
                        root.forceActiveFocus(pressedBy)
                }
            }
            onClicked: {
                pressedBy = reasonToHandOn
                root.analysis.analyze(root.detail.findingId, note.text)
            }
        }
        PlainText {
            objectName: "modelWarning"
            visible: root.analysis.isAvailable && root.detail.showsModelWarning
            text: root.analysis.warning
            color: Theme.secondary
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
    }
}
