import QtQuick
import QtQuick.Layouts
import Ulvak
import Ulvak.Style

/// The largest findings of all.
ColumnLayout {
    id: root

    required property WindowModel app

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
            model: root.app.summary.largest

            LargestRow {
                required property int index
                objectName: "largest-" + index
                isLast: index === root.app.summary.largest.count - 1
                onClicked: root.app.showLevel(level)
                width: parent.width
            }
        }
    }
}
