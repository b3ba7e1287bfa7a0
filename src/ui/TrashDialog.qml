import QtQuick
import Ulvak

/// Asks before the Trash is emptied of more than was put there from here. The answer is about what was asked, whatever
/// is asked by then.
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
    // Without motion it is closed before the answer is told.
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
