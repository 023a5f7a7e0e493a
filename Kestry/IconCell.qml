import QtQuick
import Kestry

/// A button that is a symbol alone; its label is for listening.
Item {
    id: root

    required property string symbol
    required property string label
    property color color: Theme.primaryText

    signal triggered

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.onPressAction: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onSpacePressed: root.triggered()

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.line
        opacity: Theme.highlightOpacity
        visible: pressArea.containsMouse || root.activeFocus
    }

    Symbol {
        anchors.centerIn: parent
        width: Theme.symbolSize
        height: Theme.symbolSize
        name: root.symbol
        color: root.color
        opacity: pressArea.pressed ? Theme.pressedOpacity : 1
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.triggered()
    }
}
