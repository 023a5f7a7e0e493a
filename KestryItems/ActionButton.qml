import QtQuick
import KestryItems

/// The button of the panel's one row.
PrimaryButtonStyle {
    colors: Theme.dark
    fontSize: Theme.panelSmallFont
    padding: Theme.controlPadding
    symbolSize: Theme.smallSymbolSize
    fontWeight: Font.Medium // one font file less for the panels
    implicitHeight: Theme.controlHeight
}
