import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The overview during a scan.
ColumnLayout {
    id: root

    required property ScanModel scan

    spacing: Math.round(14 * Theme.u)

    PlainText {
        text: "Taranıyor…"
        font.pixelSize: Theme.largeTitle
        font.bold: true
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    ProgressBar {
        indeterminate: true
        Layout.fillWidth: true
        Accessible.name: "Taranıyor"
    }
    GridLayout {
        columns: 2
        columnSpacing: Theme.spaceL
        rowSpacing: Theme.spaceS

        PlainText {
            text: "Dosya"
            color: Theme.secondary
        }
        Figures {
            objectName: "scannedFiles"
            text: root.scan.filesText
            color: Theme.text
            font.pixelSize: Theme.body
        }
        PlainText {
            text: "Boyut"
            color: Theme.secondary
        }
        Figures {
            objectName: "scannedBytes"
            text: root.scan.bytesText
            color: Theme.text
            font.pixelSize: Theme.body
        }
    }
    PlainText {
        id: current
        objectName: "currentPath"
        text: root.scan.currentPath
        color: Theme.tertiary
        font.family: "monospace"
        font.pixelSize: Theme.caption
        elide: Text.ElideMiddle
        maximumLineCount: 1
        Layout.fillWidth: true

        HoverHandler { id: hover }
        ToolTip {
            objectName: "currentTip"
            visible: hover.hovered && current.truncated
            text: root.scan.currentPath
        }
    }
}
