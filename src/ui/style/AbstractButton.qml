import QtQuick
import QtQuick.Templates as T

/// Behaviour shared by all buttons of the window: mouse, keys and screen readers all end in a click.
T.AbstractButton {
    id: root

    /// Off for destructive buttons: Return is too easily pressed.
    property bool activatesOnReturn: true

    /// For whatever takes over the focus: whether to show it.
    readonly property int reasonToHandOn: visualFocus ? Qt.TabFocusReason : Qt.MouseFocusReason

    /// Clicks the button unless it is disabled or hidden.
    function activate() {
        if (enabled && visible)
            clicked()
    }

    /// Returns whether the key was handled.
    function pressByReturn(isAutoRepeat: bool): bool {
        if (activatesOnReturn && !isAutoRepeat)
            activate()
        return activatesOnReturn
    }

    implicitWidth: Math.max(implicitBackgroundWidth + leftInset + rightInset, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight + topInset + bottomInset, implicitContentHeight + topPadding + bottomPadding)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    // Qt leaves the focus with a hidden control.
    onVisibleChanged: if (!visible) focus = false

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: activate()

    Keys.onReturnPressed: event => { event.accepted = pressByReturn(event.isAutoRepeat) }
    Keys.onEnterPressed: event => { event.accepted = pressByReturn(event.isAutoRepeat) }
}
