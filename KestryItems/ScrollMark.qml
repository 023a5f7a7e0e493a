import QtQuick
import KestryItems

/// Tells at the right edge of a view where it is scrolled to, and scrolls it: by dragging, and by a
/// press where the view is to go. Keys and wheel scroll without it.
Item {
    id: root

    required property Flickable view
    property color color: Theme.workspace.controlLine
    readonly property real least: view.originY - view.topMargin
    readonly property real hidden: Math.max(0,
        view.contentHeight + view.topMargin + view.bottomMargin - view.height)
    readonly property real way: height - mark.height

    /// Scrolls so that the mark begins at a height.
    function moveTo(y: real): void {
        const top = Math.max(0, Math.min(y, root.way));
        root.view.cancelFlick();
        root.view.contentY = root.least + (root.way > 0 ? top / root.way * root.hidden : 0);
    }

    anchors.right: parent.right
    width: Theme.scrollAreaWidth
    height: view.height
    visible: hidden > 0

    Rectangle {
        id: mark
        objectName: "scrollMark"
        anchors.right: parent.right
        y: root.hidden > 0 ? (root.view.contentY - root.least) / root.hidden * root.way : 0
        width: area.containsMouse || area.pressed ? Theme.scrollMarkPointedWidth : Theme.scrollMarkWidth
        height: Math.min(root.height, Math.max(Theme.scrollMarkLeast,
            root.height * root.height / (root.height + root.hidden)))
        radius: width / 2
        color: root.color
    }

    MouseArea {
        id: area
        /// Of the pointer below the top of the mark.
        property real grip: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: mouse => {
            const isOnMark = mouse.y >= mark.y && mouse.y <= mark.y + mark.height;
            area.grip = isOnMark ? mouse.y - mark.y : mark.height / 2;
            root.moveTo(mouse.y - area.grip);
        }
        onPositionChanged: mouse => {
            if (area.pressed) {
                root.moveTo(mouse.y - area.grip);
            }
        }
    }
}
