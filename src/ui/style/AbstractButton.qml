import QtQuick
import QtQuick.Templates as T

/// What every button of the window does, whatever it looks like: mouse, keys and screen readers all end in a click.
T.AbstractButton {
    id: root

    /// Off for what destroys: Return is pressed too easily.
    property bool activatesOnReturn: true

    /// For what gets the keyboard in this button's place: whether it shows.
    readonly property int reasonToHandOn: visualFocus ? Qt.TabFocusReason : Qt.MouseFocusReason

    /// What a click does.
    function activate() {
        if (enabled && visible)
            clicked()
    }

    /// Whether the key was for this button.
    function pressByReturn(isAutoRepeat: bool): bool {
        if (activatesOnReturn && !isAutoRepeat)
            activate()
        return activatesOnReturn
    }

    implicitWidth: Math.max(implicitBackgroundWidth + leftInset + rightInset, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight + topInset + bottomInset, implicitContentHeight + topPadding + bottomPadding)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    // The toolkit leaves the keyboard with what it hides.
    onVisibleChanged: if (!visible) focus = false

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: activate()

    Keys.onReturnPressed: event => { event.accepted = pressByReturn(event.isAutoRepeat) }
    Keys.onEnterPressed: event => { event.accepted = pressByReturn(event.isAutoRepeat) }
}
