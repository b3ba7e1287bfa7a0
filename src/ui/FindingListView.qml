import QtQuick
import QtQuick.Layouts
import Ulvak

/// The findings of one level.
Item {
    id: root

    required property WindowModel app
    readonly property bool isScanning: app.phase === WindowModel.Scanning
    readonly property bool isEmpty: app.findings.count === 0

    /// Asked for by the Delete key: the prominent button of the detail column.
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
                    text: root.app.listTitle
                    font.pixelSize: Theme.title2
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Heading
                }
                PlainText {
                    objectName: "listSubtitle"
                    visible: text !== ""
                    text: root.app.listSubtitle
                    color: Theme.secondary
                    font.pixelSize: Theme.caption
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                }
            }
            PushButton {
                id: analyze
                objectName: "analyzeList"
                visible: root.app.offersBatch
                enabled: !root.app.isBatchRunning
                text: "Analiz Et"
                symbol: "apple.intelligence"
                onClicked: {
                    // It cannot be used while they are analysed; the rows show how that goes.
                    rows.forceActiveFocus(reasonToHandOn)
                    root.app.analyzeAllUncertain()
                }
                ToolTipText {
                    visible: analyze.hovered
                    text: "Bilinmeyen ve tahmin edilen klasörleri Apple Intelligence ile analiz et"
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
                Spinner {
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
            readonly property levelInfo about: root.app.listLevel
            objectName: "listEmpty"
            symbol: about.symbol
            tint: Theme.named(about.color)
            title: root.app.phase === WindowModel.Idle ? "Henüz tarama yapılmadı" : "Burada bir şey yok"
            description: root.app.phase === WindowModel.Idle ? "Başlamak için Tara'ya bas." : about.summary
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
