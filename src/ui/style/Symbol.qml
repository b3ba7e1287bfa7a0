import QtQuick
import QtQuick.Window

/// One of the named symbols in one colour. Decorative: whoever shows it says in words what it means.
Item {
    id: root

    property string name: ""
    /// The drawing, for who has it by its address.
    property url source: name === "" ? "" : "image://symbols/" + name
    property color color: Theme.text
    property real size: Theme.body * 1.25

    readonly property bool isEmpty: "" + source === ""

    function hex(part: real): string {
        return Math.round(part * 255).toString(16).padStart(2, "0")
    }

    // Whole pixels of the screen, which are more than the item's own units on a dense one: between two pixels a line is
    // drawn on both.
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
