import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T

/// Asks before something is destroyed or moved away. Cancel is the default and has the focus; Return cancels
/// from wherever the focus is. Only a click or the space key confirms.
Popup {
    id: root

    required property string title
    required property string message
    required property string confirmText
    property bool destructive: false
    property bool onlyDismisses: false
    property bool isNeeded: false
    readonly property real maxHeight: (parent?.height ?? 640) - 2 * Theme.padding

    signal confirmed()

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(420 * Theme.u, (parent?.width ?? 480) - 2 * Theme.padding)
    padding: Theme.padding
    modal: true
    focus: true
    closePolicy: Popup.CloseOnEscape

    onAboutToShow: isNeeded = true

    // Made when it is opened first: most dialogs never are.
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

            Keys.onReturnPressed: root.close()
            Keys.onEnterPressed: root.close()

            // However long the names are, the buttons stay in the window.
            Flickable {
                objectName: "dialogTexts"
                contentHeight: texts.implicitHeight
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredHeight: texts.implicitHeight
                Layout.maximumHeight: Math.max(40, root.maxHeight - buttons.implicitHeight - 2 * root.padding - Theme.spaceL)

                ScrollBar.vertical: ThinScrollBar {}

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

                PushButton {
                    objectName: "confirm"
                    visible: !root.onlyDismisses
                    enabled: root.opened
                    width: Math.min(implicitWidth, buttons.width)
                    text: root.confirmText
                    prominent: true
                    destructive: root.destructive
                    activatesOnReturn: false
                    onClicked: {
                        root.close()
                        root.confirmed()
                    }
                }
                PushButton {
                    id: cancel
                    objectName: "cancel"
                    width: Math.min(implicitWidth, buttons.width)
                    text: root.onlyDismisses ? "Tamam" : "Vazgeç"
                    onClicked: root.close()
                }
            }
        }
    }
    background: Rectangle {
        radius: Theme.radiusL
        color: Theme.raised
        border.color: Theme.line
    }
    T.Overlay.modal: Rectangle {
        color: Theme.shade
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
        NumberAnimation { property: "scale"; from: 0.97; to: 1; duration: Theme.quick }
    }
    exit: Transition { NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.quick } }
}
