import QtQuick
import QtQuick.Controls.Basic

/// A line between two groups of a menu; takes no room while it is not visible.
MenuSeparator {
    padding: Math.round(4 * Theme.u)
    height: visible ? implicitHeight : 0

    contentItem: Rectangle {
        implicitHeight: 1
        color: Theme.line
    }
}
