import QtQuick
import QtQuick.Layouts

/// The overview of a result.
ColumnLayout {
    id: root

    required property var app
    // By number, so that a control keeps the focus while what it shows changes.
    readonly property var levels: app.levels
    readonly property var largest: app.largest

    spacing: Math.round(20 * Theme.u)

    ColumnLayout {
        objectName: "disk"
        visible: root.app.hasDisk
        spacing: Math.round(8 * Theme.u)
        Layout.fillWidth: true

        PlainText {
            objectName: "reclaimable"
            text: root.app.reclaimableText
            color: Theme.green
            font.pixelSize: Theme.display
            font.bold: true
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: Theme.title2
            Layout.fillWidth: true
        }
        PlainText {
            text: "gönül rahatlığıyla boşaltılabilir (güvenli + yeniden oluşan)"
            color: Theme.secondary
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        DiskBar {
            segments: root.app.segments
            usedText: root.app.usedText
            freeText: root.app.freeText
            isLow: root.app.isDiskLow
            Layout.fillWidth: true
        }
    }
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
            objectName: "cancelBatch"
            visible: root.app.isBatchRunning
            text: "Durdur"
            onClicked: root.app.cancelBatch()
        }
        PushButton {
            objectName: "analyzeAll"
            visible: !root.app.isBatchRunning && root.app.isModelAvailable
            text: "Hepsini Analiz Et"
            onClicked: root.app.analyzeAllUncertain()
        }
    }
    ModelStatus {
        app: root.app
        Layout.fillWidth: true
    }
    GridLayout {
        id: cards
        readonly property real minimum: Math.round(180 * Theme.u)
        columns: Math.max(1, Math.floor((width + columnSpacing) / (minimum + columnSpacing)))
        columnSpacing: Math.round(12 * Theme.u)
        rowSpacing: columnSpacing
        Layout.fillWidth: true

        Repeater {
            model: root.levels.length

            LevelCard {
                required property int index
                objectName: "card-" + level
                level: about.level
                about: root.levels[index]
                onClicked: root.app.sidebar = level
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: cards.minimum
            }
        }
    }
    ColumnLayout {
        spacing: 0
        Layout.fillWidth: true

        PlainText {
            text: "En büyükler"
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
            Layout.bottomMargin: Math.round(8 * Theme.u)
            Accessible.role: Accessible.Heading
        }
        Repeater {
            model: root.largest.length

            LargestRow {
                required property int index
                readonly property var about: root.largest[index] ?? ({ level: "", symbol: "", color: "", title: "", location: "", sizeText: "" })
                objectName: "largest-" + index
                level: about.level
                symbol: about.symbol
                levelColor: about.color
                text: about.title
                location: about.location
                sizeText: about.sizeText
                isLast: index === root.largest.length - 1
                onClicked: root.app.sidebar = level
                Layout.fillWidth: true
            }
        }
    }
    PlainText {
        objectName: "scanLine"
        visible: text !== ""
        text: root.app.scanLine
        color: Theme.secondary
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}
