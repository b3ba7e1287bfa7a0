import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

/// What the language model can say about the finding, and a note for it.
Rectangle {
    id: root

    required property var app
    readonly property var detail: app.detail

    objectName: "modelSection"
    implicitHeight: column.implicitHeight + 2 * Math.round(14 * Theme.u)
    radius: Theme.radiusM
    color: Theme.faint(Theme.purple, 0.06)
    border.color: Theme.faint(Theme.purple, 0.2)

    Accessible.role: Accessible.Grouping
    Accessible.name: "Apple Intelligence"

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Math.round(14 * Theme.u)
        spacing: Theme.spaceM

        Row {
            spacing: Theme.spaceS
            Symbol {
                name: "apple.intelligence"
                color: Theme.purple
                size: Theme.body * 1.25
                anchors.verticalCenter: parent.verticalCenter
            }
            Text {
                text: "Apple Intelligence"
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
                anchors.verticalCenter: parent.verticalCenter
            }
        }
        Text {
            objectName: "sectionText"
            text: root.app.isModelAvailable
                  ? "Apple Intelligence bu klasörün içeriğine, dosya türlerine, tarihlerine ve hangi uygulamaya ait olduğuna bakıp bir yorum yapar. Her şey cihazında işlenir."
                  : root.app.modelMessage
            textFormat: Text.PlainText
            color: Theme.secondary
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            lineHeight: 1.15
            Layout.fillWidth: true
        }
        TextArea {
            id: note
            objectName: "note"
            visible: root.app.isModelAvailable
            placeholderText: "Bildiğin bir şey var mı? Ör. \"bench benim test çıktılarım\""
            placeholderTextColor: Theme.tertiary
            color: Theme.text
            font.pixelSize: Theme.body
            wrapMode: TextArea.Wrap
            textFormat: TextEdit.PlainText
            selectByMouse: true
            KeyNavigation.priority: KeyNavigation.BeforeItem
            KeyNavigation.tab: ask
            Layout.fillWidth: true
            Accessible.name: "Not"
            background: Rectangle {
                radius: Theme.radiusS
                color: Theme.raised
                border.width: note.activeFocus ? 2 : 1
                border.color: note.activeFocus ? Theme.accent : Theme.line
            }
        }
        PushButton {
            id: ask
            objectName: "analyze"
            visible: root.app.isModelAvailable
            enabled: !root.detail.isAnalyzing
            busy: root.detail.isAnalyzing
            text: root.detail.isAnalyzing ? "Düşünüyor…" : root.detail.source === "ai" ? "Yeniden Analiz Et" : "Analiz Et"
            onClicked: root.app.analyze(root.detail.token, note.text)
        }
        Text {
            objectName: "modelWarning"
            visible: root.app.isModelAvailable && root.detail.source === "ai"
            text: "Apple Intelligence yanılabilir. Önemli olabilecek şeyleri silmeden önce Finder'da bir göz at."
            color: Theme.secondary
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
    }
}
