import QtQuick
import Ulvak.Style

/// A text that stands by itself: never markup, whatever a name holds, and told to screen readers as it is shown.
Text {
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft  // whichever way a name is read
    color: Theme.text
    font.pixelSize: Theme.body

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
