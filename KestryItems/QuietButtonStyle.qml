import QtQuick
import KestryItems

/// A button for what can be done besides.
TextButton {
    id: root

    property ThemeColors colors: Theme.workspace

    tipColors: colors
    ringColors: colors
    fill: colors.surface
    textColor: colors.primaryText
    highlight: colors.highlight
    fontWeight: Font.Medium
    disabledOpacity: Theme.quietDisabledOpacity
    pressedOpacity: Theme.quietPressedOpacity
}
