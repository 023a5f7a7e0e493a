import QtQuick
import KestryItems

/// A button for what cannot be undone.
QuietButtonStyle {
    textColor: Theme.workspace.attention
    pressedOpacity: Theme.pressedOpacity
}
