import QtQuick

/// The detail column: nothing, one finding, or several.
FocusScope {
    id: root

    required property var app
    property bool isOverview: app.isOverview

    /// What had the focus in here has gone.
    signal focusLost()

    /// Presses the prominent button of what is shown.
    function pressMain() {
        if (place.item?.pressMain)
            place.item.pressMain()
    }

    objectName: "detailContainer"

    Rectangle {
        anchors.fill: parent
        color: Theme.detail
    }
    Loader {
        id: place

        // Another finding gets a view of its own: a note or an open dialog belongs to one finding.
        readonly property string key: root.app.detailKind === "one" ? root.app.detail.token : root.app.detailKind

        anchors.fill: parent
        sourceComponent: root.app.detailKind === "one" ? one : root.app.detailKind === "several" ? several : empty
        onKeyChanged: {
            const hadFocus = root.activeFocus
            active = false
            active = true
            if (hadFocus)
                root.focusLost()
        }
    }

    Component {
        id: empty
        EmptyState {
            objectName: "detailEmpty"
            symbol: "sidebar.right"
            title: root.isOverview ? "Bir etiket seç" : "Bir öğe seç"
            description: root.isOverview
                         ? "Soldaki etiketlerden birine tıklayarak neyin ne kadar yer kapladığını gör."
                         : "Ne olduğunu, silinirse ne olacağını ve nasıl temizleyebileceğini burada göreceksin."
        }
    }
    Component {
        id: one
        DetailView { app: root.app }
    }
    Component {
        id: several
        MultiSelectionView { app: root.app }
    }
}
