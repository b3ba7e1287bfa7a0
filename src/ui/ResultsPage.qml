import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The overview of a result.
ColumnLayout {
    id: root

    required property WindowModel app

    spacing: Math.round(20 * Theme.u)

    ColumnLayout {
        objectName: "disk"
        visible: root.app.disk.isKnown
        spacing: Math.round(8 * Theme.u)
        Layout.fillWidth: true

        PlainText {
            objectName: "reclaimable"
            text: root.app.summary.reclaimableText
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
            disk: root.app.disk
            Layout.fillWidth: true
        }
    }
    Banners {
        app: root.app
        spacing: root.spacing
        Layout.fillWidth: true
    }
    ModelStatus {
        analysis: root.app.analysis
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
            objectName: "levels"
            model: root.app.summary.levels

            LevelCard {
                objectName: "card-" + name
                onClicked: root.app.showLevel(level)
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: cards.minimum
            }
        }
    }
    LargestList {
        app: root.app
        Layout.fillWidth: true
    }
    PlainText {
        objectName: "scanLine"
        visible: text !== ""
        text: root.app.scan.resultText
        color: Theme.secondary
        font.pixelSize: Theme.caption
        wrapMode: Text.Wrap
        Layout.fillWidth: true
    }
}
