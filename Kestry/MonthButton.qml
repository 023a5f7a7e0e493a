import QtQuick
import KestryItems

/// A step to another month.
Pressable {
    id: root

    required property string symbol

    tip: label
    tipColors: Theme.workspace
    ringDistance: 0
    width: Theme.monthButtonWidth
    height: Theme.monthButtonHeight
    opacity: enabled ? (isPressed ? Theme.pressedOpacity : 1) : Theme.lastMonthOpacity

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.highlight
        visible: root.isHighlighted
    }

    Symbol {
        anchors.centerIn: parent
        width: Theme.monthSymbolSize
        height: Theme.monthSymbolSize
        name: root.symbol
        color: Theme.workspace.primaryText
    }
}
