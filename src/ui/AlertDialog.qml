import QtQuick
import Ulvak

/// Shows the application's alert for as long as there is one; a new one takes the place of the old.
ConfirmDialog {
    id: root

    required property WindowModel app

    function follow() {
        if (app.alertId === "") {
            close()
            return
        }
        title = app.alertTitle
        message = app.alertMessage
        open()
    }

    objectName: "alert"
    title: ""
    message: ""
    confirmText: ""
    onlyDismisses: true

    // At the beginning of the way out: an alert that comes during it is another one, and is shown.
    onAboutToHide: if (app.alertId !== "") app.dismissAlert()
    Component.onCompleted: follow()

    Connections {
        target: root.app
        function onAlertChanged() { root.follow() }
    }
}
