import QtQuick
import QtQuick.Layouts
import Ulvak

/// The content column for the summary: one face for each phase.
ScrollColumn {
    id: root

    required property WindowModel app

    /// By the welcome's button, which had the keyboard by this `Qt.FocusReason`, and goes.
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
        WelcomeFace {
            disk: root.app.disk
            scan: root.app.scan
            analysis: root.app.analysis
            onScanBegun: reason => root.scanBegun(reason)
        }
    }
    Component {
        id: scanning
        ScanningFace { scan: root.app.scan }
    }
    Component {
        id: results
        ResultsFace { app: root.app }
    }
}
