import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The findings of one level.
Item {
    id: root

    required property WindowModel app
    readonly property bool isScanning: app.scan.phase === ScanModel.Scanning
    readonly property bool isEmpty: app.list.rows.count === 0

    /// The Delete key was pressed: triggers the detail column's prominent button.
    signal deleteRequested()

    objectName: "findingList"

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        GridLayout {
            id: heading

            columns: title.implicitWidth + analyze.implicitWidth + columnSpacing > width && analyze.visible ? 1 : 2
            columnSpacing: Theme.spaceM
            rowSpacing: Theme.spaceM
            Layout.fillWidth: true
            Layout.margins: Theme.spaceL
            Layout.bottomMargin: Theme.spaceM

            ColumnLayout {
                spacing: Math.round(2 * Theme.u)
                Layout.fillWidth: true
                PlainText {
                    id: title
                    objectName: "listTitle"
                    text: root.app.list.title
                    font.pixelSize: Theme.title2
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                PlainText {
                    objectName: "listSubtitle"
                    visible: text !== ""
                    text: root.app.list.subtitle
                    color: Theme.secondary
                    font.pixelSize: Theme.caption
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
            }
            Button {
                id: analyze
                objectName: "analyzeList"
                visible: root.app.list.offersBatch
                enabled: !root.app.analysis.isBatchRunning
                text: "Analiz Et"
                icon.source: "image://symbols/apple.intelligence"
                onClicked: {
                    // The button is disabled during the analysis; the rows show progress.
                    rows.forceActiveFocus(reasonToHandOn)
                    root.app.analysis.analyzeAllUncertain()
                }
                ToolTip {
                    visible: analyze.hovered
                    text: "Bilinmeyen ve tahmin edilen klasörleri " + root.app.analysis.withModelText + " analiz et"
                }
            }
        }
        Loader {
            id: rows
            focus: true
            Layout.fillWidth: true
            Layout.fillHeight: true
            sourceComponent: root.isScanning ? scanning : root.isEmpty ? empty : list
        }
    }

    Component {
        id: scanning
        Item {
            objectName: "listScanning"
            Row {
                anchors.centerIn: parent
                spacing: Theme.spaceM
                BusyIndicator {
                    size: Theme.body * 1.3
                    anchors.verticalCenter: parent.verticalCenter
                }
                PlainText {
                    text: "Taranıyor…"
                    color: Theme.secondary
                    anchors.verticalCenter: parent.verticalCenter
                }
            }
        }
    }
    Component {
        id: empty
        EmptyState {
            readonly property levelInfo about: root.app.list.about
            objectName: "listEmpty"
            symbol: about.symbol
            tint: Theme.named(about.color)
            title: root.app.scan.phase === ScanModel.Idle ? "Henüz tarama yapılmadı" : "Burada bir şey yok"
            description: root.app.scan.phase === ScanModel.Idle ? "Başlamak için Tara'ya bas." : about.summary
        }
    }
    Component {
        id: list
        FindingRows {
            app: root.app
            onDeleteRequested: root.deleteRequested()
        }
    }
}
