import QtQuick
import Kestry

/// A button that is a symbol alone; its label is for listening.
Item {
    id: root

    required property string symbol
    required property string label
    property color tint: Theme.workspace.secondaryText

    signal triggered

    implicitWidth: Theme.buttonHeight
    implicitHeight: Theme.buttonHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.onPressAction: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onSpacePressed: root.triggered()

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.line
        opacity: Theme.highlightOpacity
        visible: pressArea.containsMouse || root.activeFocus
    }

    Symbol {
        anchors.centerIn: parent
        width: Theme.actionSymbolSize
        height: Theme.actionSymbolSize
        name: root.symbol
        color: root.tint
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.triggered()
    }
}
