import QtQuick
import QtQuick.Templates as T

/// A thin progress bar; indeterminate while the total is unknown.
T.ProgressBar {
    id: root

    property color tint: Theme.accent

    implicitHeight: Math.round(6 * Theme.u)
    clip: true

    background: Rectangle {
        radius: height / 2
        color: Theme.fill
    }

    contentItem: Item {
        Rectangle {
            visible: !root.indeterminate
            width: root.visualPosition * parent.width
            height: parent.height
            radius: height / 2
            color: root.tint
            Behavior on width { NumberAnimation { duration: Theme.calm } }
        }
        Rectangle {
            id: runner
            visible: root.indeterminate
            width: parent.width * 0.28
            height: parent.height
            radius: height / 2
            color: root.tint

            SequentialAnimation on x {
                running: root.indeterminate && root.visible && !Theme.reducedMotion
                loops: Animation.Infinite
                NumberAnimation { from: -runner.width; to: root.width; duration: 1400; easing.type: Easing.InOutQuad }
            }
        }
    }
}
