import QtQuick
import Ulvak.Style

/// A size relative to the largest in its list.
Rectangle {
    id: root

    required property real fraction
    required property color tint

    implicitWidth: Math.round(72 * Theme.u)
    implicitHeight: Math.round(4 * Theme.u)
    radius: height / 2
    color: Theme.fill

    Accessible.ignored: true

    Rectangle {
        objectName: "filled"
        width: Math.max(3, root.fraction < 1 ? root.fraction * root.width : root.width)
        height: parent.height
        radius: height / 2
        color: root.tint
    }
}
