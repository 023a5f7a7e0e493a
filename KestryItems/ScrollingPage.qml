import QtQuick
import QtQuick.Window
import KestryItems

/// A page that scrolls as one: by wheel, by keys, and to whatever gets the keyboard.
Flickable {
    id: root

    /// How much room an item that is brought into view has above it.
    property real roomAbove: Theme.dashboardSpacing
    readonly property Item focused: Window.activeFocusItem
    readonly property real farthest: Math.max(0, contentHeight - height)

    function holds(item: Item): bool {
        for (let each = item; each; each = each.parent) {
            if (each === root.contentItem) {
                return true;
            }
        }
        return false;
    }

    function follow(): void {
        if (root.focused && root.holds(root.focused)) {
            root.reveal(root.focused);
        }
    }

    /// Shows an item of the page, with some room around it.
    function reveal(item: Item): void {
        const y = item.mapToItem(root.contentItem, 0, 0).y;
        const top = y - root.roomAbove;
        const bottom = y + item.height + Theme.dashboardSpacing;
        if (top < root.contentY || item.height > root.height) {
            root.scrollTo(top);
        } else if (bottom > root.contentY + root.height) {
            root.scrollTo(bottom - root.height);
        }
    }

    function scrollTo(y: real): void {
        root.contentY = Math.max(0, Math.min(y, root.farthest));
    }

    /// Takes the keys that scroll.
    function press(event: KeyEvent): void {
        const page = root.height - Theme.rowHeight;
        const steps = {[Qt.Key_Down]: Theme.rowHeight, [Qt.Key_Up]: -Theme.rowHeight,
            [Qt.Key_PageDown]: page, [Qt.Key_PageUp]: -page,
            [Qt.Key_Home]: -root.contentHeight, [Qt.Key_End]: root.contentHeight};
        const others = Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier | Qt.ShiftModifier;
        event.accepted = root.interactive && steps[event.key] !== undefined && !(event.modifiers & others);
        if (event.accepted) {
            root.scrollTo(root.contentY + steps[event.key]);
        }
    }

    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
    clip: interactive
    Keys.onPressed: event => root.press(event)
    onFocusedChanged: root.follow()
    onFarthestChanged: if (contentY > farthest) contentY = farthest
    // What has the keyboard may have moved.
    onContentHeightChanged: later.start()

    Timer {
        id: later
        interval: 0
        onTriggered: root.follow()
    }

    // What there is above and below can be seen without moving anything.
    ScrollMark {
        parent: root
        view: root
    }
}
