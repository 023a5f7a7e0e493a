import QtQuick
import QtQuick.Window

/// Gives the keyboard to the first control of a page when what had it there can have it no longer,
/// because it has gone, is hidden or is not available.
Item {
    id: root

    /// The page.
    required property Item home
    /// The window's content, of which the page is a part. Disabled while a sheet lies over it.
    required property Item around
    readonly property Item keyboard: Window.activeFocusItem
    readonly property bool isUsed: root.canUse(root.keyboard)
    readonly property bool isCovered: !root.around.enabled
    property bool wasHome: false

    /// A scope that has the keyboard has nothing in it that could have it.
    function canUse(item: Item): bool {
        const isScope = item instanceof FocusScope || item instanceof Loader;
        return item !== null && item.visible && item.enabled && (item.activeFocusOnTab || !isScope);
    }

    function holds(whole: Item, item: Item): bool {
        for (let each = item; each; each = each.parent) {
            if (each === whole) {
                return true;
            }
        }
        return false;
    }

    function look(): void {
        if (!root.canUse(root.keyboard)) {
            later.restart();
        } else if (root.holds(root.around, root.keyboard)) {
            root.wasHome = root.holds(root.home, root.keyboard);
        }
    }

    function giveBack(): void {
        const isElsewhere = root.isCovered || !Window.active || !root.keyboard;
        if (!isElsewhere && root.wasHome && !root.canUse(root.keyboard)) {
            root.wasHome = false;
            root.home.nextItemInFocusChain(true).forceActiveFocus(Qt.OtherFocusReason);
        }
    }

    onKeyboardChanged: root.look()
    onIsUsedChanged: root.look()
    onIsCoveredChanged: later.restart()

    Timer {
        id: later
        interval: 0
        onTriggered: root.giveBack()
    }
}
