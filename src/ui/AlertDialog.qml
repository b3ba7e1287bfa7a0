import QtQuick
import Ulvak

/// Shows the application's alert for as long as there is one; a new one takes the place of the old.
ConfirmDialog {
    id: root

    required property AlertModel alert

    function follow() {
        if (!alert.isThere) {
            close()
            return
        }
        title = alert.title
        message = alert.message
        open()
    }

    objectName: "alert"
    title: ""
    message: ""
    confirmText: ""
    onlyDismisses: true

    // At the beginning of the way out: an alert that comes during it is another one, and is shown.
    onAboutToHide: if (alert.isThere) alert.dismiss()
    Component.onCompleted: follow()

    Connections {
        target: root.alert
        function onChanged() { root.follow() }
    }
}
