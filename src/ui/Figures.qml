import QtQuick
import Ulvak
import Ulvak.Style

/// A number with its unit, in digits of equal width, so that numbers do not jump while they change and line up in
/// columns.
FigureText {
    color: Theme.text
    font.pixelSize: Theme.body

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
