import QtQuick
import KestryItems

/// The button for the one thing to do here.
TextButton {
    id: root

    property ThemeColors colors: Theme.workspace

    tipColors: colors
    ringColors: colors
    fill: colors.accent
    textColor: colors.accentText
    highlight: colors.fillHighlight
    fontWeight: Font.DemiBold
}
