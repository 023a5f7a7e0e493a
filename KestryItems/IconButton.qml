import QtQuick
import KestryItems

/// A button of the window that is a symbol alone.
Pressable {
    id: root

    required property string symbol
    property ThemeColors colors: Theme.workspace
    property color tint: colors.primaryText
    property color fill: "transparent"

    tip: label
    tipColors: colors
    implicitWidth: Theme.buttonHeight
    implicitHeight: Theme.buttonHeight
    opacity: enabled ? (isPressed ? Theme.pressedOpacity : 1) : Theme.primaryDisabledOpacity

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: root.fill
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: root.colors.highlight
        visible: root.isHighlighted
    }

    Symbol {
        anchors.centerIn: parent
        width: Theme.iconSymbolSize
        height: Theme.iconSymbolSize
        name: root.symbol
        color: root.tint
    }
}
