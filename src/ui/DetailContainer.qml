import QtQuick
import Ulvak
import Ulvak.Style

/// The detail column: empty, one finding, or several.
FocusScope {
    id: root

    required property WindowModel app
    readonly property bool isOverview: app.isOverview
    // A note, an open dialog or a held-down button belongs to what was shown when it was begun.
    readonly property string shown: app.detailKind === WindowModel.One ? app.detail.findingId : app.detailKind

    readonly property DetailView oneView: one.item as DetailView
    readonly property MultiSelectionView severalView: several.item as MultiSelectionView

    /// Whatever had the focus in here is gone.
    signal focusLost()

    /// Presses the prominent button of what is shown.
    function pressMain() {
        if (one.isWanted)
            oneView?.pressMain()
        if (several.isWanted)
            severalView?.pressMain()
    }

    objectName: "detailContainer"

    onShownChanged: {
        const hadFocus = activeFocus
        oneView?.forget()
        severalView?.forget()
        if (hadFocus)
            focusLost()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.detail
    }
    // Loaded shortly after the window appears and kept, so that the first selection is as fast as any other.
    Timer {
        interval: 400
        running: true
        onTriggered: one.active = several.active = true
    }
    component Page: Loader {
        required property int kind
        readonly property bool isWanted: root.app.detailKind === kind

        anchors.fill: parent
        visible: isWanted
        active: kind === WindowModel.Empty
        onIsWantedChanged: if (isWanted) active = true
    }
    Page {
        kind: WindowModel.Empty
        sourceComponent: EmptyState {
            objectName: "detailEmpty"
            symbol: "sidebar.right"
            title: root.isOverview ? "Bir etiket seç" : "Bir öğe seç"
            description: root.isOverview
                         ? "Soldaki etiketlerden birine tıklayarak neyin ne kadar yer kapladığını gör."
                         : "Ne olduğunu, silinirse ne olacağını ve nasıl temizleyebileceğini burada göreceksin."
        }
    }
    Page {
        id: one
        kind: WindowModel.One
        sourceComponent: DetailView {
            detail: root.app.detail
            actions: root.app.actions
            analysis: root.app.analysis
        }
    }
    Page {
        id: several
        kind: WindowModel.Several
        sourceComponent: MultiSelectionView { several: root.app.several }
    }
}
