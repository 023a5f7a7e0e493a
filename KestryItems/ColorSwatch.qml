import QtQuick
import KestryItems

/// A round sample of a colour that can be chosen.
Pressable {
    id: root

    required property color fill
    /// Of the sign on it.
    required property color mark
    required property string symbol

    implicitWidth: Theme.swatchSize
    implicitHeight: Theme.swatchSize
    tip: label
    tipColors: Theme.workspace

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: root.fill
        border.color: Theme.workspace.controlLine
    }

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: Theme.workspace.highlight
        visible: root.isHighlighted
    }

    Symbol {
        anchors.centerIn: parent
        width: Theme.swatchSymbolSize
        height: Theme.swatchSymbolSize
        name: root.symbol
        color: root.mark
        visible: root.symbol.length > 0
    }
}
