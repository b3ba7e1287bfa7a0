import QtQuick
import Ulvak

/// Asks before the Trash is emptied of more than was put there from here. The answer is about what was asked, whatever
/// is asked by then.
ConfirmDialog {
    id: root

    required property WindowModel app
    property string asked: ""

    function follow() {
        if (app.trashQuestionId === "") {
            close()
            return
        }
        asked = app.trashQuestionId
        message = app.trashQuestion
        open()
    }

    objectName: "confirmEmptyTrash"
    title: "Çöp kutusundaki her şey silinsin mi?"
    message: ""
    confirmText: "Hepsini Boşalt"
    destructive: true

    onConfirmed: app.emptyTrashAsAsked(asked)
    // Without motion it is closed before the answer is told.
    onClosed: {
        const answered = asked
        Qt.callLater(() => app.dismissTrashQuestion(answered))
    }
    Component.onCompleted: follow()

    Connections {
        target: root.app
        function onTrashQuestionChanged() { root.follow() }
    }
}
