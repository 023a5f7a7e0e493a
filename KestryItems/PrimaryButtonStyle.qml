import QtQuick
import KestryItems

/// The button for the one thing to do here.
TextButton {
    id: root

    property ThemeColors colors: Theme.workspace

    fill: colors.accent
    textColor: colors.accentText
    highlight: colors.fillHighlight
    fontWeight: Font.DemiBold
}
