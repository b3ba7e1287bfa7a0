import QtQuick
import QtQuick.Window

/// One of the named symbols in one colour. Decorative: whoever shows it says in words what it means.
Item {
    id: root

    required property string name
    property color color: Theme.text
    property real size: Theme.body * 1.25

    function hex(part: real): string {
        return Math.round(part * 255).toString(16).padStart(2, "0")
    }

    implicitWidth: size
    implicitHeight: size

    Accessible.ignored: true

    // As many pixels as the screen has there, which is more than the item's own units on a dense one.
    Image {
        anchors.centerIn: parent
        width: root.size
        height: root.size
        sourceSize.width: Math.ceil(root.size * Screen.devicePixelRatio)
        sourceSize.height: Math.ceil(root.size * Screen.devicePixelRatio)
        source: root.name === "" ? "" : "image://symbols/" + root.name + "/" + root.hex(root.color.r) + root.hex(root.color.g)
                                        + root.hex(root.color.b) + root.hex(root.color.a)
        asynchronous: false
    }
}
