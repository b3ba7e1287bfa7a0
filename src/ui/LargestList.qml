import QtQuick
import QtQuick.Layouts

/// The largest findings of all.
ColumnLayout {
    id: root

    required property var app
    // By number, so that a row keeps the focus while what it shows changes.
    readonly property var largest: app.largest

    spacing: 0

    PlainText {
        text: "En büyükler"
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Layout.bottomMargin: Math.round(8 * Theme.u)
        Accessible.role: Accessible.Heading
    }
    Column {
        Layout.fillWidth: true

        Repeater {
            model: root.largest.length

            LargestRow {
                required property int index
                readonly property var about: root.largest[index] ?? ({ level: "", symbol: "", color: "", title: "", location: "", sizeText: "" })
                objectName: "largest-" + index
                level: about.level
                symbol: about.symbol
                levelColor: about.color
                text: about.title
                location: about.location
                sizeText: about.sizeText
                isLast: index === root.largest.length - 1
                onClicked: root.app.sidebar = level
                width: parent.width
            }
        }
    }
}
