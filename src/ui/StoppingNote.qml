import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// Covers the window while it waits to close, so that nothing else can be started. Closing again does not wait.
Dialog {
    id: root

    required property bool shown

    objectName: "stoppingNote"
    closePolicy: Dialog.NoAutoClose
    enter: null
    exit: null
    visible: shown

    contentItem: RowLayout {
        spacing: Theme.spaceM

        Accessible.role: Accessible.AlertMessage
        Accessible.name: note.text

        BusyIndicator {}
        Text {
            id: note
            text: "Şu anki öğe bitiyor, sonra pencere kapanacak. Beklemek istemezsen yeniden kapat: öğe arka planda bitirilir."
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.body
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
    }
}
