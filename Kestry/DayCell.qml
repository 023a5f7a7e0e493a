import QtQuick
import KestryItems

/// One day of a calendar page.
Item {
    id: root

    required property string number
    required property string name
    required property bool isInMonth
    required property bool isAllowed
    required property bool isChosen
    required property bool isToday
    /// It has the keyboard.
    required property bool isCurrent

    signal triggered

    function press(): void {
        if (root.enabled && root.visible) {
            root.triggered();
        }
    }

    implicitHeight: Theme.controlHeight
    Accessible.role: Accessible.Cell
    Accessible.name: root.isAllowed ? root.name : root.name + ", cannot be chosen"
    Accessible.selected: root.isChosen
    Accessible.onPressAction: root.press()

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(parent.width, Theme.cellSize)
        height: Theme.cellSize
        radius: Theme.controlRadius
        color: root.isChosen ? Theme.workspace.accent
            : pointer.hovered && root.isAllowed ? Theme.workspace.highlight : "transparent"
        border.width: root.isCurrent ? 2 : root.isToday ? 1 : 0
        border.color: root.isCurrent ? Theme.workspace.primaryText : Theme.workspace.secondaryText
    }

    Text {
        anchors.centerIn: parent
        text: root.number
        textFormat: Text.PlainText
        color: root.isChosen ? Theme.workspace.accentText
            : root.isInMonth ? Theme.workspace.primaryText : Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        opacity: root.isAllowed ? 1 : Theme.quietDisabledOpacity
        Accessible.ignored: true
    }

    HoverHandler { id: pointer }

    TapHandler {
        onTapped: root.triggered()
    }
}
