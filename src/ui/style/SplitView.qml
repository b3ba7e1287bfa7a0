import QtQuick
import QtQuick.Templates as T

/// Columns separated by thin lines whose grab area extends a little to either side.
T.SplitView {
    id: root

    handle: Item {
        id: handle
        readonly property bool isHeld: T.SplitHandle.pressed || T.SplitHandle.hovered
        implicitWidth: 1
        containmentMask: Item {
            x: -4
            width: 9
            height: root.height
        }
        Rectangle {
            anchors.fill: parent
            color: handle.isHeld ? Theme.accent : Theme.line
        }
    }
}
