import QtQuick
import KestryItems

/// Shows a tool tip once the pointer has rested on an item for a while.
Timer {
    id: root

    required property Item item
    required property string text
    required property bool isPointedAt
    property int place: ToolTips.BelowPointer
    property ThemeColors colors: Theme.dark

    interval: Theme.tipDelay
    running: isPointedAt && text.length > 0
    onTriggered: ToolTips.show(root.item, root.text, root.place, root.colors)
    onTextChanged: ToolTips.change(root.item, root.text)
    onIsPointedAtChanged: {
        if (!isPointedAt) {
            ToolTips.hide();
        }
    }
}
