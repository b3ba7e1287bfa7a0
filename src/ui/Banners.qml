import QtQuick
import QtQuick.Layouts
import Ulvak

/// What there is to know beside a result, and what can be done about it. Not there when there is nothing.
ColumnLayout {
    id: root

    required property WindowModel app

    visible: app.trashText !== "" || app.freedText !== "" || app.deniedText !== "" || app.uncertainText !== ""

    Banner {
        objectName: "trashBanner"
        visible: root.app.trashText !== ""
        symbol: "trash"
        tint: Theme.accent
        text: root.app.trashText
        Layout.fillWidth: true

        PushButton {
            objectName: "emptyTrash"
            text: "Çöp Kutusunu Boşalt"
            activatesOnReturn: false
            enabled: !root.app.isEmptyingTrash
            busy: root.app.isEmptyingTrash
            onClicked: root.app.emptyTrash()
        }
    }
    Banner {
        objectName: "freedBanner"
        visible: root.app.freedText !== ""
        symbol: "checkmark.circle.fill"
        tint: Theme.green
        text: root.app.freedText
        Layout.fillWidth: true
    }
    Banner {
        objectName: "deniedBanner"
        visible: root.app.deniedText !== ""
        symbol: "lock.fill"
        tint: Theme.orange
        text: root.app.deniedText
        Layout.fillWidth: true

        PushButton {
            objectName: "openSettings"
            visible: root.app.hasPrivacySettings
            text: "Ayarları Aç"
            onClicked: root.app.openFullDiskAccessSettings()
        }
    }
    Banner {
        objectName: "uncertainBanner"
        visible: root.app.uncertainText !== ""
        symbol: "apple.intelligence"
        tint: Theme.purple
        text: root.app.uncertainText
        Layout.fillWidth: true

        ProgressLine {
            objectName: "batchProgress"
            visible: root.app.isBatchRunning
            value: root.app.batchFraction
            tint: Theme.purple
            implicitWidth: Math.round(80 * Theme.u)
            Accessible.name: "Analiz edilen"
        }
        PushButton {
            id: cancelBatch
            objectName: "cancelBatch"
            visible: root.app.isBatchRunning
            text: "Durdur"
            onClicked: {
                const reason = reasonToHandOn
                root.app.cancelBatch()
                analyzeAll.forceActiveFocus(reason)
            }
        }
        PushButton {
            id: analyzeAll
            objectName: "analyzeAll"
            visible: !root.app.isBatchRunning && root.app.isModelAvailable
            text: "Hepsini Analiz Et"
            onClicked: {
                const reason = reasonToHandOn
                root.app.analyzeAllUncertain()
                cancelBatch.forceActiveFocus(reason)
            }
        }
    }
}
