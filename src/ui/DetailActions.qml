import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The actions for the finding. A dialog keeps the finding it asks about.
ColumnLayout {
    id: root

    required property DetailModel detail
    required property ActionsModel actions

    /// Presses the prominent button, if there is one.
    function pressMain() {
        if (detail.action === DetailModel.Trash && !detail.isCleaning)
            trash.activate()
        else if (detail.action === DetailModel.Simulator && !detail.isCleaning)
            simulator.activate()
        else if (detail.action === DetailModel.EmptyTrash)
            emptyTrash.activate()
    }

    function forget() {
        levels.close()
        confirmPermanent.close()
        confirmTrash.close()
    }

    spacing: Theme.spaceM

    Button {
        id: simulator
        objectName: "deleteSimulator"
        visible: root.detail.action === DetailModel.Simulator
        enabled: !root.detail.isCleaning
        busy: root.detail.isCleaning
        text: "Simülatörü Sil"
        highlighted: true
        activatesOnReturn: false
        tint: Theme.named(root.detail.actionColor)
        Layout.maximumWidth: root.width
        onClicked: root.actions.removePermanently(root.detail.findingId)
    }
    Button {
        id: emptyTrash
        objectName: "emptyTrashFinding"
        visible: root.detail.action === DetailModel.EmptyTrash
        text: "Çöp Kutusunu Boşalt"
        icon.source: "image://symbols/trash"
        highlighted: true
        activatesOnReturn: false
        tint: Theme.named(root.detail.actionColor)
        Layout.maximumWidth: root.width
        onClicked: root.actions.emptyTrash()
    }
    Flow {
        id: cleaning
        visible: root.detail.action === DetailModel.Trash
        spacing: Theme.spaceM
        Layout.fillWidth: true

        Button {
            id: trash
            objectName: "moveToTrash"
            width: Math.min(implicitWidth, cleaning.width)
            enabled: !root.detail.isCleaning
            busy: root.detail.isCleaning
            text: "Çöp Kutusuna Taşı"
            icon.source: "image://symbols/trash"
            highlighted: true
            tint: Theme.named(root.detail.actionColor)
            onClicked: root.detail.asksBeforeTrash ? confirmTrash.ask() : root.actions.moveToTrash(root.detail.findingId)
        }
        Button {
            objectName: "removePermanently"
            width: Math.min(implicitWidth, cleaning.width)
            visible: root.detail.offersPermanent
            enabled: !root.detail.isCleaning
            text: "Kalıcı Sil…"
            destructive: true
            onClicked: confirmPermanent.ask()
        }
    }
    NoteLine {
        objectName: "quitNote"
        visible: root.detail.action === DetailModel.Trash && root.detail.quitText !== ""
        symbol: "info.circle"
        text: root.detail.quitText
        size: Theme.caption
        Layout.fillWidth: true
    }
    NoteLine {
        objectName: "reason"
        visible: root.detail.action === DetailModel.None
        symbol: "lock"
        text: root.detail.reason
        size: Theme.callout
        Layout.fillWidth: true
    }
    Flow {
        id: others
        spacing: Theme.spaceM
        Layout.fillWidth: true

        Repeater {
            model: root.actions.others

            Button {
                required property string name
                required property string title
                required property string symbol
                objectName: name + "Button"
                width: Math.min(implicitWidth, others.width)
                text: title
                icon.source: "image://symbols/" + symbol
                onClicked: root.actions.perform(name, root.detail.findingId)
            }
        }
        Button {
            id: copyCommand
            objectName: "copyCommand"
            property string copied: ""  ///< the finding whose command was copied last
            width: Math.min(implicitWidth, others.width)
            visible: root.detail.command !== ""
            text: copied === root.detail.findingId ? "Kopyalandı" : "Komutu Kopyala"
            icon.source: "image://symbols/doc.on.doc"
            onClicked: {
                root.actions.copyCommand(root.detail.findingId)
                copied = root.detail.findingId
            }
        }
        Button {
            id: relabel
            objectName: "relabel"
            width: Math.min(implicitWidth, others.width)
            text: "Etiketi Değiştir"
            opensMenu: true
            Accessible.role: Accessible.ButtonMenu
            onClicked: levels.openBy(visualFocus)

            LevelMenu {
                id: levels
                objectName: "detailLevels"
                y: relabel.height + 4
                actions: root.actions
                findingId: root.detail.findingId
                canReset: root.detail.canReset
            }
        }
    }

    ConfirmDialog {
        id: confirmPermanent
        property string asked: ""
        function ask() {
            asked = root.detail.findingId
            title = root.detail.permanentQuestion
            confirmText = root.detail.permanentButton
            open()
        }
        objectName: "confirmPermanent"
        title: ""
        message: "Bu işlem geri alınamaz. Dosyalar çöp kutusuna gitmez."
        confirmText: ""
        destructive: true
        onAccepted: root.actions.removePermanently(asked)
    }
    ConfirmDialog {
        id: confirmTrash
        property string asked: ""
        function ask() {
            asked = root.detail.findingId
            title = root.detail.trashQuestion
            message = root.detail.trashMessage
            open()
        }
        objectName: "confirmTrash"
        title: ""
        message: ""
        confirmText: "Çöp Kutusuna Taşı"
        onAccepted: root.actions.moveToTrash(asked)
    }
}
