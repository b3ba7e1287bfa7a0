pragma Singleton
import QtQuick

// The source of every colour, size and duration.
QtObject {
    id: theme

    /// "light", "dark", or empty to follow the desktop's palette.
    property string appearance: ""
    /// Set if the user wants no animations: transitions then take no time.
    property bool reducedMotion: false
    readonly property bool dark: appearance === "" ? palette.window.hslLightness < 0.5 : appearance === "dark"

    // Type. All sizes scale with the desktop's font.
    readonly property real base: Math.max(Application.font.pixelSize, Application.font.pointSize * 96 / 72, 9)
    readonly property real caption: Math.round(base * 0.88)
    readonly property real callout: Math.round(base * 0.94)
    readonly property real body: Math.round(base)
    readonly property real headline: Math.round(base * 1.08)
    readonly property real title2: Math.round(base * 1.35)
    readonly property real title1: Math.round(base * 1.7)
    readonly property real largeTitle: Math.round(base * 2.1)
    readonly property real display: Math.round(base * 3.05)

    // Spacing. Grows more slowly than the font, to leave room for large text.
    readonly property real u: Math.max(1, 1 + (base / 13 - 1) * 0.4)
    readonly property real spaceS: Math.round(6 * u)
    readonly property real spaceM: Math.round(10 * u)
    readonly property real spaceL: Math.round(16 * u)
    readonly property real padding: Math.round(24 * u)
    readonly property real radiusS: 6
    readonly property real radiusM: 10
    readonly property real radiusL: 12
    readonly property real controlHeight: Math.round(30 * u)
    readonly property int quick: reducedMotion ? 0 : 110
    readonly property int calm: reducedMotion ? 0 : 180

    // Surfaces.
    readonly property color window: dark ? "#1b1c20" : "#ffffff"
    readonly property color side: dark ? "#232429" : "#f0f1f4"
    readonly property color detail: dark ? "#1f2025" : "#f8f8fa"
    readonly property color raised: dark ? "#2a2c32" : "#ffffff"
    readonly property color line: dark ? "#33353b" : "#e3e4e9"
    readonly property color edge: dark ? "#7a808b" : "#7d838e"  ///< a text field's border: must be visible
    readonly property color fill: dark ? Qt.rgba(1, 1, 1, 0.10) : Qt.rgba(0, 0, 0, 0.07)
    readonly property color hover: dark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0, 0, 0, 0.045)
    readonly property color press: dark ? Qt.rgba(1, 1, 1, 0.12) : Qt.rgba(0, 0, 0, 0.09)
    readonly property color shade: dark ? Qt.rgba(0, 0, 0, 0.55) : Qt.rgba(0.1, 0.11, 0.14, 0.32)

    // Ink.
    readonly property color text: dark ? "#f2f3f5" : "#1a1c20"
    readonly property color secondary: dark ? "#abb0ba" : "#5b616b"
    readonly property color tertiary: dark ? "#8f95a0" : "#666c77"
    readonly property color onTint: "#ffffff"

    // Named colours.
    readonly property color accent: dark ? "#5c94ff" : "#2563d9"
    readonly property color purple: dark ? "#b48af5" : "#7c43cc"
    readonly property color green: dark ? "#45c772" : "#197f3c"
    readonly property color teal: dark ? "#3dbccb" : "#0e7585"
    readonly property color orange: dark ? "#f39c42" : "#b25900"
    readonly property color red: dark ? "#ff6b64" : "#c92a25"
    readonly property color gray: dark ? "#9aa1ac" : "#686e79"

    readonly property SystemPalette desktop: SystemPalette { id: palette }

    /// A named colour, by the name the levels use for it.
    function named(name: string): color {
        switch (name) {
        case "green": return green
        case "teal": return teal
        case "orange": return orange
        case "red": return red
        default: return gray
        }
    }

    function faint(tint: color, opacity: real): color {
        return Qt.rgba(tint.r, tint.g, tint.b, opacity)
    }

    /// A filled button's background: dark enough for white text in light and dark mode.
    function ground(tint: color): color {
        return dark ? Qt.darker(tint, 1.55) : tint
    }
}
