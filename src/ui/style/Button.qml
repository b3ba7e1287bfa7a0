import QtQuick
import QtQuick.Layouts

/// A button: plain, or highlighted with a tinted background. Not based on the template of the same name, so that
/// button behaviour lives in one place; its content replaces Qt's, which neither wraps lines nor shows an ampersand
/// in a name.
AbstractButton {
    id: root

    property bool highlighted: false
    property bool destructive: false
    property bool busy: false
    property bool opensMenu: false
    property color tint: destructive ? Theme.red : Theme.accent
    property real labelPadding: 0
    readonly property color ink: highlighted ? Theme.onTint : destructive ? Theme.red : Theme.text

    implicitHeight: Math.max(Theme.controlHeight, Math.ceil(content.implicitHeight + 2 * (5 * Theme.u + labelPadding)))
    implicitWidth: Math.ceil(content.implicitWidth + 2 * (12 * Theme.u + labelPadding)) + 1
    opacity: enabled ? 1 : 0.45
    icon.color: ink

    contentItem: Item {
        RowLayout {
            id: content
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 2 * Math.round(10 * Theme.u))
            spacing: Theme.spaceS

            Loader {
                visible: active
                active: root.busy
                sourceComponent: BusyIndicator {
                    size: Theme.body
                    color: root.ink
                }
            }
            Symbol {
                visible: !isEmpty && !root.busy
                source: root.icon.source
                color: root.icon.color
                size: Theme.body * 1.15
            }
            Text {
                visible: text !== ""
                text: root.text
                textFormat: Text.PlainText
                color: root.ink
                font.pixelSize: Theme.body
                font.weight: root.highlighted ? Font.DemiBold : Font.Medium
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            Symbol {
                visible: root.opensMenu
                name: "chevron.down"
                color: Theme.secondary
                size: Theme.caption
            }
        }
    }

    background: Rectangle {
        id: ground
        radius: Theme.radiusS + 1
        color: root.highlighted ? Theme.ground(root.tint) : Theme.raised
        border.width: root.highlighted ? 0 : 1
        border.color: Theme.line

        Rectangle {
            anchors.fill: parent
            radius: ground.radius
            color: root.down ? (root.highlighted ? Qt.rgba(0, 0, 0, 0.22) : Theme.press)
                             : root.hovered && root.enabled ? (root.highlighted ? Qt.rgba(0, 0, 0, 0.11) : Theme.hover) : "transparent"
            Behavior on color { ColorAnimation { duration: Theme.quick } }
        }
        Rectangle {
            visible: root.visualFocus
            anchors.fill: parent
            anchors.margins: -3
            radius: ground.radius + 3
            color: "transparent"
            border.width: 2
            border.color: Theme.faint(Theme.accent, 0.75)
        }
    }
}
