import QtQuick
import QtQuick.Window

/// A named symbol in one colour. Decorative: its user must express its meaning in words.
Item {
    id: root

    property string name: ""
    /// The image URL; may be set instead of `name`.
    property url source: name === "" ? "" : "image://symbols/" + name
    property color color: Theme.text
    property real size: Theme.body * 1.25

    readonly property bool isEmpty: "" + source === ""

    function hex(part: real): string {
        return Math.round(part * 255).toString(16).padStart(2, "0")
    }

    // Rounded to device pixels, of which a high-density screen has several per unit: a line between two pixels would
    // be blurred over both.
    readonly property real density: Screen.devicePixelRatio
    readonly property int pixels: Math.round(size * density)

    implicitWidth: pixels / density
    implicitHeight: implicitWidth

    Accessible.ignored: true

    Image {
        x: Math.round((root.width - width) / 2 * root.density) / root.density
        y: Math.round((root.height - height) / 2 * root.density) / root.density
        width: root.implicitWidth
        height: root.implicitHeight
        sourceSize.width: root.pixels
        sourceSize.height: root.pixels
        source: root.isEmpty ? "" : root.source + "/" + root.hex(root.color.r) + root.hex(root.color.g)
                                    + root.hex(root.color.b) + root.hex(root.color.a)
        asynchronous: false
    }
}
