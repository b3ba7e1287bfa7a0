import QtQuick
import Ulvak.Style

/// Standalone text: never interpreted as markup, whatever a name contains, and read out as shown.
Text {
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft  // whatever a name's text direction
    color: Theme.text
    font.pixelSize: Theme.body

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
