import QtQuick
import KestryItems

/// A button of the panel that is a symbol alone.
Pressable {
    id: root

    required property string symbol
    property color color: Theme.dark.primaryText
    property real symbolSize: Theme.symbolSize

    tip: label
    ringColors: Theme.dark
    ringDistance: 0
    implicitWidth: Theme.cellSize
    implicitHeight: Theme.cellSize

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.dark.highlight
        visible: root.isHighlighted
    }

    Symbol {
        anchors.centerIn: parent
        width: root.symbolSize
        height: root.symbolSize
        name: root.symbol
        color: root.color
        opacity: root.isPressed ? Theme.pressedOpacity : 1
    }
}
