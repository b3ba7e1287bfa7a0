import QtQuick
import QtQuick.Layouts
import Ulvak.Style

/// A coloured notice with room for actions.
Rectangle {
    id: root

    required property string symbol
    required property color tint
    required property string text
    default property alias accessory: place.data

    implicitHeight: row.implicitHeight + 2 * Math.round(12 * Theme.u)
    radius: Theme.radiusM
    color: Theme.faint(tint, 0.08)

    Accessible.role: Accessible.Notification
    Accessible.name: text

    GridLayout {
        id: row

        readonly property real textRoom: width - mark.width - place.implicitWidth - 2 * columnSpacing
        readonly property bool isTight: textRoom < 11 * Theme.body

        anchors.fill: parent
        anchors.margins: Math.round(12 * Theme.u)
        columns: 3
        columnSpacing: Theme.spaceM
        rowSpacing: Theme.spaceM

        Symbol {
            id: mark
            name: root.symbol
            color: root.tint
            size: Theme.body * 1.4
        }
        Text {
            text: root.text
            textFormat: Text.PlainText
            color: Theme.text
            font.pixelSize: Theme.body
            wrapMode: Text.Wrap
            Layout.columnSpan: row.isTight ? 2 : 1
            Layout.fillWidth: true
        }
        // At the end of the line, or below the text if there is too little room.
        RowLayout {
            id: place
            spacing: Theme.spaceM
            Layout.column: row.isTight ? 0 : 2
            Layout.row: row.isTight ? 1 : 0
            Layout.columnSpan: row.isTight ? 3 : 1
            Layout.maximumWidth: row.width
            Layout.fillWidth: false  // or it would take part of the text's spare width
            Layout.alignment: Qt.AlignRight | Qt.AlignVCenter
        }
    }
}
