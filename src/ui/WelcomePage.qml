import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The overview before the first scan.
ColumnLayout {
    id: root

    required property DiskModel disk
    required property ScanModel scan
    required property AnalysisModel analysis

    signal scanBegun(int reason)

    spacing: Theme.spaceL

    Symbol {
        name: "sparkles.rectangle.stack"
        color: Theme.accent
        size: 44 * Theme.u
    }
    PlainText {
        text: "Diskinde neler yer kaplıyor?"
        font.pixelSize: Theme.largeTitle
        font.bold: true
        wrapMode: Text.Wrap
        Layout.fillWidth: true
        Accessible.role: Accessible.Heading
    }
    PlainText {
        text: "Ulvak; ev klasörünü, uygulama verilerini, geçici dosyaları ve geliştirici araçlarının bıraktıklarını tarar. Her şeyi silinirse ne olacağına göre etiketler. Tanımadığı klasörleri " + root.analysis.withModelText + " senin için yorumlar."
        color: Theme.secondary
        wrapMode: Text.Wrap
        lineHeight: 1.25
        Layout.fillWidth: true
        Layout.maximumWidth: 560 * Theme.u
    }
    DiskBar {
        visible: root.disk.isKnown
        disk: root.disk
        Layout.fillWidth: true
    }
    Button {
        objectName: "start"
        text: "Taramayı Başlat"
        icon.source: "image://symbols/magnifyingglass"
        highlighted: true
        labelPadding: Math.round(8 * Theme.u)
        focus: true
        Layout.maximumWidth: root.width
        onClicked: {
            const hadFocus = activeFocus
            const reason = reasonToHandOn
            root.scan.start()
            if (hadFocus)
                root.scanBegun(reason)
        }
    }
    ModelStatus {
        analysis: root.analysis
        Layout.fillWidth: true
    }
}
