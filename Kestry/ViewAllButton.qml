import QtQuick
import KestryItems

/// Leads from a few sessions to all of them.
Pressable {
    id: root

    label: "View all"
    ringDistance: 0
    implicitWidth: content.implicitWidth + 2 * Theme.rowPadding
    implicitHeight: Theme.tableHeaderHeight
    opacity: isPressed ? Theme.quietPressedOpacity : 1

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.highlight
        visible: root.isHighlighted
    }

    Row {
        id: content
        anchors.centerIn: parent
        spacing: Theme.spacing

        Text {
            text: root.label
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            font.weight: Font.Medium
            Accessible.ignored: true
        }

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.buttonSymbolSize
            height: Theme.buttonSymbolSize
            name: "arrow.right"
            color: Theme.workspace.secondaryText
        }
    }
}
