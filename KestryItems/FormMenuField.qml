import QtQuick
import KestryItems

/// A labelled choice that opens a menu.
Column {
    id: root

    required property string label
    required property string value

    /// The menu should open below the item.
    signal opened(item: Item)

    function takeFocus(): void {
        button.forceActiveFocus();
    }

    spacing: Theme.tightSpacing

    Text {
        width: parent.width
        text: root.label
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Pressable {
        id: button
        width: root.width
        height: Theme.fieldHeight
        label: root.label + ": " + root.value
        Accessible.role: Accessible.ButtonMenu
        Keys.onDownPressed: root.opened(button)
        onTriggered: root.opened(button)

        Rectangle {
            anchors.fill: parent
            radius: Theme.controlRadius
            color: Theme.workspace.surface
            border.width: button.activeFocus ? Theme.ringWidth : 1
            border.color: button.activeFocus ? Theme.workspace.accent : Theme.workspace.controlLine
        }

        Text {
            anchors.left: parent.left
            anchors.leftMargin: Theme.controlPadding
            anchors.right: chevron.left
            anchors.rightMargin: Theme.spacing
            height: parent.height
            text: root.value
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }

        Symbol {
            id: chevron
            anchors.right: parent.right
            anchors.rightMargin: Theme.controlPadding
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.smallSymbolSize
            height: Theme.smallSymbolSize
            name: "chevron.down"
            color: Theme.workspace.secondaryText
        }
    }
}
