import QtQuick
import Ulvak

/// Confirms emptying a Trash that holds more than this program put there. The answer applies to the question shown,
/// even if another has come up since.
ConfirmDialog {
    id: root

    required property TrashModel trash
    property string asked: ""

    function follow() {
        if (trash.questionId === "") {
            close()
            return
        }
        asked = trash.questionId
        message = trash.question
        open()
    }

    objectName: "confirmEmptyTrash"
    title: "Çöp kutusundaki her şey silinsin mi?"
    message: ""
    confirmText: "Hepsini Boşalt"
    destructive: true

    onAccepted: trash.emptyAsAsked(asked)
    // Without animation the dialog closes before `accepted` is sent.
    onClosed: {
        const answered = asked
        Qt.callLater(() => trash.dismissQuestion(answered))
    }
    Component.onCompleted: follow()

    Connections {
        target: root.trash
        function onQuestionChanged() { root.follow() }
    }
}
