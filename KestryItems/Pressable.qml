import QtQuick
import KestryItems

/// What can be pressed by pointer, by keyboard and by those who listen. It has no look of its own.
Item {
    id: root

    required property string label
    property string tip: ""
    /// What those who listen are told besides; while it is not available, that.
    property string help: ""
    property int tipPlace: ToolTips.BelowPointer
    property ThemeColors tipColors: Theme.dark
    property ThemeColors ringColors: Theme.workspace
    /// Of the ring that shows that this has the keyboard: how far outside it stands.
    property real ringDistance: Theme.ringDistance
    readonly property bool isPressed: pressArea.pressed && pressArea.containsMouse
    readonly property bool isHighlighted: enabled && (pressArea.containsMouse || activeFocus)

    signal triggered

    function press(): void {
        // Those who listen reach what is hidden, too.
        if (root.enabled && root.visible) {
            root.triggered();
        }
    }

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.description: root.enabled ? root.help : "Not available"
    Accessible.onPressAction: root.press()
    Keys.onReturnPressed: root.press()
    Keys.onEnterPressed: root.press()
    Keys.onSpacePressed: root.press()

    MouseArea {
        id: pressArea
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.triggered()
    }

    FocusRing {
        item: root
        distance: root.ringDistance
        colors: root.ringColors
    }

    HoverTip {
        item: root
        text: root.tip
        place: root.tipPlace
        colors: root.tipColors
        isPointedAt: pressArea.containsMouse && !pressArea.pressed
    }
}
