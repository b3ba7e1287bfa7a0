import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T

/// Asks before something is destroyed or moved away. Cancel is the default and has the focus; Return cancels
/// too, unless the user has gone to the other button.
Popup {
    id: root

    required property string title
    required property string message
    required property string confirmText
    property bool destructive: false
    property bool onlyDismisses: false

    signal confirmed()

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(420 * Theme.u, (parent?.width ?? 480) - 2 * Theme.padding)
    padding: Theme.padding
    modal: true
    focus: true
    closePolicy: Popup.CloseOnEscape

    onOpened: cancel.forceActiveFocus(Qt.TabFocusReason)

    contentItem: ColumnLayout {
        spacing: Theme.spaceM

        Accessible.role: Accessible.AlertMessage
        Accessible.name: root.title
        Accessible.description: root.message

        Text {
            objectName: "dialogTitle"
            text: root.title
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.headline
            font.bold: true
            wrapMode: Text.Wrap
            maximumLineCount: 6
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        Text {
            objectName: "dialogMessage"
            text: root.message
            textFormat: Text.PlainText
            color: Theme.secondary
            font.pixelSize: Theme.body
            wrapMode: Text.Wrap
            lineHeight: 1.15
            maximumLineCount: 14
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        Flow {
            layoutDirection: Qt.RightToLeft
            spacing: Theme.spaceM
            Layout.fillWidth: true
            Layout.topMargin: Theme.spaceM

            PushButton {
                id: confirm
                objectName: "confirm"
                visible: !root.onlyDismisses
                text: root.confirmText
                prominent: true
                destructive: root.destructive
                onClicked: {
                    root.close()
                    root.confirmed()
                }
            }
            PushButton {
                id: cancel
                objectName: "cancel"
                text: root.onlyDismisses ? "Tamam" : "Vazgeç"
                onClicked: root.close()
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
