import QtQuick
import QtQuick.Window

/// One of the named symbols in one colour. Decorative: whoever shows it says in words what it means.
Image {
    id: root

    required property string name
    property color color: Theme.text
    property real size: Theme.body * 1.25

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: name === "" ? "" : "image://symbols/" + name + "/" + hex(color.r) + hex(color.g) + hex(color.b) + hex(color.a)
    fillMode: Image.PreserveAspectFit
    asynchronous: false

    Accessible.ignored: true

    function hex(part: real): string {
        return Math.round(part * 255).toString(16).padStart(2, "0")
    }
}
