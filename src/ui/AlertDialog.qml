import QtQuick
import Ulvak

/// Shows the application's alert while there is one; a new alert replaces the old one.
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

    // When closing starts: an alert raised while closing is a different one and must still be shown.
    onAboutToHide: if (alert.isThere) alert.dismiss()
    Component.onCompleted: follow()

    Connections {
        target: root.alert
        function onChanged() { root.follow() }
    }
}
