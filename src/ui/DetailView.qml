import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// One finding: what it is, what deleting it costs, and its actions.
ScrollColumn {
    id: root

    required property DetailModel detail
    required property ActionsModel actions
    required property AnalysisModel analysis

    function pressMain() {
        buttons.pressMain()
    }

    /// Nothing begun with one finding may carry over to the next.
    function forget() {
        startOver()
        buttons.forget()
        model.forget()
    }

    objectName: "detailView"
    spacing: Math.round(18 * Theme.u)

    ColumnLayout {
        spacing: Theme.spaceS
        Layout.fillWidth: true

        Flow {
            id: badges
            spacing: Theme.spaceM
            Layout.fillWidth: true
            LevelBadge {
                id: levelBadge
                width: Math.min(implicitWidth, badges.width)
                about: root.detail.level
            }
            Item {
                visible: root.detail.badge !== ""
                width: Math.min(sourceBadge.implicitWidth, badges.width)
                height: Math.max(sourceBadge.implicitHeight, levelBadge.height)
                SourceBadge {
                    id: sourceBadge
                    objectName: "detailBadge"
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width
                    symbol: root.detail.sourceSymbol
                    label: root.detail.sourceLabel
                    badge: root.detail.badge
                    confidenceText: root.detail.confidenceText
                }
            }
        }
        SelectableText {
            objectName: "detailTitle"
            text: root.detail.title
            font.pixelSize: Theme.title1
            font.bold: true
            Layout.fillWidth: true
        }
        PlainText {
            objectName: "detailSize"
            text: root.detail.sizeText
            color: Theme.secondary
            font.pixelSize: Theme.title2
        }
        NoteLine {
            objectName: "freedNote"
            visible: root.detail.freedText !== ""
            symbol: "info.circle"
            text: root.detail.freedText
            size: Theme.caption
            Layout.fillWidth: true
        }
    }
    SelectableText {
        objectName: "explanation"
        text: root.detail.explanation
        Layout.fillWidth: true
    }
    DetailActions {
        id: buttons
        detail: root.detail
        actions: root.actions
        Layout.fillWidth: true
    }
    ModelSection {
        id: model
        visible: root.detail.showsModel
        detail: root.detail
        analysis: root.analysis
        Layout.fillWidth: true
    }
    DetailContents {
        visible: root.detail.contents.count > 0
        detail: root.detail
        Layout.fillWidth: true
    }
    DetailMetadata {
        detail: root.detail
        Layout.fillWidth: true
    }
}
