import QtQuick
import QtQuick.Layouts
import Ulvak

/// The content column for the summary: one page per phase.
ScrollColumn {
    id: root

    required property WindowModel app

    /// Sent by the welcome page's button as it disappears; `reason` is the `Qt.FocusReason` it was focused with.
    signal scanBegun(int reason)

    objectName: "overview"

    Loader {
        focus: true
        sourceComponent: root.app.scan.phase === ScanModel.Idle ? welcome : root.app.scan.phase === ScanModel.Scanning ? scanning : results
        onSourceComponentChanged: root.contentY = 0
        Layout.fillWidth: true
    }

    Component {
        id: welcome
        WelcomePage {
            disk: root.app.disk
            scan: root.app.scan
            analysis: root.app.analysis
            onScanBegun: reason => root.scanBegun(reason)
        }
    }
    Component {
        id: scanning
        ScanningPage { scan: root.app.scan }
    }
    Component {
        id: results
        ResultsPage { app: root.app }
    }
}
