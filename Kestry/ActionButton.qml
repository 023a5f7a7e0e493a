import QtQuick
import Kestry

/// The button of the panel's one row.
PrimaryButtonStyle {
    colors: Theme.dark
    fontSize: Theme.smallFont
    padding: Theme.controlPadding
    implicitHeight: Theme.controlHeight
}
