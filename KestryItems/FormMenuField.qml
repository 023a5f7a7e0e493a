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

    MenuButton {
        id: button
        width: root.width
        label: root.label
        value: root.value
        onOpened: item => root.opened(item)
    }
}
