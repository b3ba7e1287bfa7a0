import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// Confirms a destructive or moving action. Cancel is the default and has the focus; Return cancels wherever the
/// focus is. Only a click or the space key confirms.
Dialog {
    id: root

    required title
    required property string message
    required property string confirmText
    property bool destructive: false
    property bool onlyDismisses: false
    property bool isNeeded: false
    readonly property real maxHeight: (parent?.height ?? 640) - 2 * Theme.padding

    onAboutToShow: isNeeded = true

    // Created on first opening: most dialogs are never opened.
    contentItem: Loader {
        focus: true
        active: root.isNeeded
        sourceComponent: ColumnLayout {
            Connections {
                target: root
                function onOpened() {
                    cancel.forceActiveFocus(Qt.TabFocusReason)
                }
            }

            spacing: Theme.spaceL

            Accessible.role: root.onlyDismisses ? Accessible.AlertMessage : Accessible.Dialog
            Accessible.name: root.title
            Accessible.description: root.message

            Keys.onReturnPressed: root.reject()
            Keys.onEnterPressed: root.reject()

            // Long names must not push the buttons out of the window.
            Flickable {
                objectName: "dialogTexts"
                contentHeight: texts.implicitHeight
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredHeight: texts.implicitHeight
                Layout.maximumHeight: Math.max(40, root.maxHeight - buttons.implicitHeight - 2 * root.padding - Theme.spaceL)

                ScrollBar.vertical: ScrollBar {}

                ColumnLayout {
                    id: texts
                    width: parent.width
                    spacing: Theme.spaceM

                    Text {
                        objectName: "dialogTitle"
                        text: root.title
                        textFormat: Text.PlainText
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.text
                        font.pixelSize: Theme.headline
                        font.bold: true
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                        Layout.fillWidth: true
                    }
                    Text {
                        objectName: "dialogMessage"
                        text: root.message
                        textFormat: Text.PlainText
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.secondary
                        font.pixelSize: Theme.body
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                        lineHeight: 1.15
                        Layout.fillWidth: true
                    }
                }
            }
            Flow {
                id: buttons
                layoutDirection: Qt.RightToLeft
                spacing: Theme.spaceM
                Layout.fillWidth: true

                Button {
                    objectName: "confirm"
                    visible: !root.onlyDismisses
                    enabled: root.opened
                    width: Math.min(implicitWidth, buttons.width)
                    text: root.confirmText
                    highlighted: true
                    destructive: root.destructive
                    activatesOnReturn: false
                    onClicked: root.accept()
                }
                Button {
                    id: cancel
                    objectName: "cancel"
                    width: Math.min(implicitWidth, buttons.width)
                    text: root.onlyDismisses ? "Tamam" : "Vazgeç"
                    onClicked: root.reject()
                }
            }
        }
    }
}
