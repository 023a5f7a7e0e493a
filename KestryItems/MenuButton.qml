import QtQuick
import KestryItems

/// A choice that opens a menu, with what is chosen on it.
Pressable {
    id: root

    required property string value

    /// The menu should open below the item.
    signal opened(item: Item)

    implicitWidth: Math.ceil(words.implicitWidth) + 2 * Theme.controlPadding + Theme.spacing
        + Theme.smallSymbolSize
    implicitHeight: Theme.fieldHeight
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: root.label + ": " + root.value
    Keys.onDownPressed: root.opened(root)
    onTriggered: root.opened(root)

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.surface
        border.width: root.activeFocus ? Theme.ringWidth : 1
        border.color: root.activeFocus ? Theme.workspace.accent : Theme.workspace.controlLine
    }

    Text {
        id: words
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
