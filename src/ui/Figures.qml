import QtQuick
import Ulvak
import Ulvak.Style

/// A number with its unit, in digits that are all equally wide, so that numbers stand still while they change and line
/// up below each other.
FigureText {
    color: Theme.text
    font.pixelSize: Theme.body

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
