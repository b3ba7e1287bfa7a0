import QtQuick
import QtQuick.Templates as T

/// Says that something is being worked on, for as long as it runs and is visible.
T.BusyIndicator {
    id: root

    property real size: Theme.body
    property color color: Theme.secondary

    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.Animation
    Accessible.name: "Sürüyor"

    contentItem: Symbol {
        name: "arrow.clockwise"
        size: root.size
        color: root.color
        transformOrigin: Item.Center

        RotationAnimator on rotation {
            running: root.running && root.visible && !Theme.reducedMotion
            from: 0
            to: 360
            duration: 1100
            loops: Animation.Infinite
        }
    }
}
