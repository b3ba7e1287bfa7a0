import QtQuick

/// Spins while visible. Not based on the template of the same name, which reports itself to screen readers as an
/// indicator, whatever role it is given.
Item {
    id: root

    property real size: Theme.body
    property color color: Theme.secondary

    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.Animation
    Accessible.name: "Sürüyor"

    Symbol {
        anchors.fill: parent
        name: "arrow.clockwise"
        size: root.size
        color: root.color
        transformOrigin: Item.Center

        RotationAnimator on rotation {
            running: root.visible && !Theme.reducedMotion
            from: 0
            to: 360
            duration: 1100
            loops: Animation.Infinite
        }
    }
}
