import QtQuick
import QtQuick.Templates as T

/// A line between two groups of a menu; takes no space while hidden.
T.MenuSeparator {
    padding: Math.round(4 * Theme.u)
    verticalPadding: padding + 4
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    height: visible ? implicitHeight : 0

    contentItem: Rectangle {
        implicitHeight: 1
        color: Theme.line
    }
}
