import QtQuick
import Ulvak
import Ulvak.Style

/// The one window.
ApplicationWindow {
    id: root

    required property WindowModel app
    /// "light" or "dark"; empty follows the desktop.
    property string appearance: ""
    /// The desktop's preference, in the same words; empty if unknown.
    property string desktopAppearance: ""

    property bool reducedMotion: false

    objectName: "main"
    title: app.isOverview ? "Ulvak" : app.list.title
    width: 1320
    height: 840
    minimumWidth: 1000
    minimumHeight: 640
    color: Theme.window

    onClosing: event => { event.accepted = root.app.mayClose() }

    Binding {
        target: Theme
        property: "appearance"
        value: root.appearance || root.desktopAppearance
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: root.reducedMotion
    }

    Shortcut {
        sequences: ["Ctrl+R"]
        enabled: root.app.scan.phase !== ScanModel.Scanning
        onActivated: root.app.scan.start()
    }
    Shortcut {
        sequences: [StandardKey.Quit, StandardKey.Close]
        onActivated: root.close()
    }
    ContentView {
        anchors.fill: parent
        app: root.app
    }
    ConfirmDialog {
        id: closeQuestion
        objectName: "confirmClose"
        title: "Temizlik sürüyor"
        message: "Kapatırsan şu anda temizlenen öğe bitirilir, sıradakilere dokunulmaz. Kapanmadan önce neyin kaldığı söylenir."
        confirmText: "Durdur ve Kapat"
        onAccepted: root.app.stopAndClose()
    }
    StoppingNote { shown: root.app.isStopping }
    Connections {
        target: root.app
        function onCloseQuestioned() { closeQuestion.open() }
        function onCloseRequested() { root.close() }
    }
}
