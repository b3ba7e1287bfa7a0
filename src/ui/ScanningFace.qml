import QtQuick
import QtQuick.Layouts

/// The overview while a scan runs.
ColumnLayout {
    id: root

    required property var app

    spacing: Math.round(14 * Theme.u)

    Text {
        text: "Taranıyor…"
        color: Theme.text
        font.pixelSize: Theme.largeTitle
        font.bold: true
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ProgressLine {
        indeterminate: true
        Layout.fillWidth: true
        Accessible.name: "Taranıyor"
    }
    GridLayout {
        columns: 2
        columnSpacing: Theme.spaceL
        rowSpacing: Theme.spaceS

        Text {
            text: "Dosya"
            color: Theme.secondary
            font.pixelSize: Theme.body
        }
        Figures {
            objectName: "scannedFiles"
            text: root.app.scannedFilesText
            color: Theme.text
            font.pixelSize: Theme.body
        }
        Text {
            text: "Boyut"
            color: Theme.secondary
            font.pixelSize: Theme.body
        }
        Figures {
            objectName: "scannedBytes"
            text: root.app.scannedBytesText
            color: Theme.text
            font.pixelSize: Theme.body
        }
    }
    Text {
        objectName: "currentPath"
        text: root.app.currentPath
        textFormat: Text.PlainText
        color: Theme.tertiary
        font.family: "monospace"
        font.pixelSize: Theme.caption
        elide: Text.ElideMiddle
        maximumLineCount: 1
        Layout.fillWidth: true
    }
}
