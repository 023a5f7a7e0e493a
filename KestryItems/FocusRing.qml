import QtQuick
import KestryItems

/// Shows which control has the keyboard, to a user who goes by it. Stands around the control, or
/// just inside it.
Rectangle {
    id: root

    /// The control.
    required property Item item
    /// How far outside.
    property real distance: Theme.ringDistance
    property real itemRadius: Theme.controlRadius
    property ThemeColors colors: Theme.workspace

    anchors.fill: parent
    anchors.margins: -root.distance
    z: 1
    radius: root.itemRadius + root.distance
    color: "transparent"
    border.width: Theme.ringWidth
    border.color: root.colors.accent
    visible: root.item.activeFocus && KeyboardUse.isCurrent
}
