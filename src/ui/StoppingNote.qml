import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T

/// Over the window while it waits to close: nothing else can be begun. Closing it once more does not wait.
Popup {
    id: root

    required property bool shown

    objectName: "stoppingNote"
    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(420 * Theme.u, (parent?.width ?? 480) - 2 * Theme.padding)
    padding: Theme.padding
    modal: true
    focus: true
    closePolicy: Popup.NoAutoClose
    visible: shown

    contentItem: RowLayout {
        spacing: Theme.spaceM

        Accessible.role: Accessible.AlertMessage
        Accessible.name: note.text

        Spinner {}
        Text {
            id: note
            text: "Şu anki öğe bitiyor, sonra pencere kapanacak. Beklemek istemezsen yeniden kapat: öğe arka planda bitirilir."
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.body
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
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
}
