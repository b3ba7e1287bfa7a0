import QtQuick
import QtQuick.Controls.Basic

/// What every button of the window does, whatever it looks like: mouse, keys and screen readers all end in a click.
AbstractButton {
    id: root

    /// Off for what destroys: Return is pressed too easily.
    property bool activatesOnReturn: true

    /// What a click does.
    function activate() {
        if (enabled)
            clicked()
    }

    function pressByReturn(event: var) {
        event.accepted = activatesOnReturn
        if (activatesOnReturn && !event.isAutoRepeat)
            activate()
    }

    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: activate()

    Keys.onReturnPressed: event => pressByReturn(event)
    Keys.onEnterPressed: event => pressByReturn(event)
}
