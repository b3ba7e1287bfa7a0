import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// Notices about a result and their actions. Hidden if there are none.
ColumnLayout {
    id: root

    required property WindowModel app

    visible: app.trash.text !== "" || app.summary.freedText !== "" || app.summary.deniedText !== "" || app.analysis.uncertainText !== ""

    Banner {
        objectName: "trashBanner"
        visible: root.app.trash.text !== ""
        symbol: "trash"
        tint: Theme.accent
        text: root.app.trash.text
        Layout.fillWidth: true

        Button {
            objectName: "emptyTrash"
            text: "Çöp Kutusunu Boşalt"
            activatesOnReturn: false
            enabled: !root.app.trash.isEmptying
            busy: root.app.trash.isEmptying
            onClicked: root.app.trash.empty()
        }
    }
    Banner {
        objectName: "freedBanner"
        visible: root.app.summary.freedText !== ""
        symbol: "checkmark.circle.fill"
        tint: Theme.green
        text: root.app.summary.freedText
        Layout.fillWidth: true
    }
    Banner {
        objectName: "deniedBanner"
        visible: root.app.summary.deniedText !== ""
        symbol: "lock.fill"
        tint: Theme.orange
        text: root.app.summary.deniedText
        Layout.fillWidth: true

        Button {
            objectName: "openSettings"
            visible: root.app.summary.hasPrivacySettings
            text: "Ayarları Aç"
            onClicked: root.app.summary.openFullDiskAccessSettings()
        }
    }
    Banner {
        objectName: "uncertainBanner"
        visible: root.app.analysis.uncertainText !== ""
        symbol: "apple.intelligence"
        tint: Theme.purple
        text: root.app.analysis.uncertainText
        Layout.fillWidth: true

        ProgressBar {
            objectName: "batchProgress"
            visible: root.app.analysis.isBatchRunning
            value: root.app.analysis.batchFraction
            tint: Theme.purple
            implicitWidth: Math.round(80 * Theme.u)
            Accessible.name: "Analiz edilen"
        }
        Button {
            id: cancelBatch
            objectName: "cancelBatch"
            visible: root.app.analysis.isBatchRunning
            text: "Durdur"
            onClicked: {
                const reason = reasonToHandOn
                root.app.analysis.cancelBatch()
                analyzeAll.forceActiveFocus(reason)
            }
        }
        Button {
            id: analyzeAll
            objectName: "analyzeAll"
            visible: !root.app.analysis.isBatchRunning && root.app.analysis.isAvailable
            text: "Hepsini Analiz Et"
            onClicked: {
                const reason = reasonToHandOn
                root.app.analysis.analyzeAllUncertain()
                cancelBatch.forceActiveFocus(reason)
            }
        }
    }
}
