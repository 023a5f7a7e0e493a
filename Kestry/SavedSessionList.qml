pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// Rows of saved sessions, made as they come into view. The keyboard moves a row focus, which stays
/// with its session when rows come, go and move.
FocusScope {
    id: root

    required property SessionsModel rows
    required property TableColumns table
    property bool isScrollable: true
    /// Between the last row and the bottom, and below the row that the keyboard goes to.
    property real roomBelow: 0
    readonly property real contentHeight: list.contentHeight
    readonly property alias count: list.count
    property alias currentRow: list.currentIndex

    signal edited(int row)
    signal deleteAsked(int row)
    signal menuRequested(int row, Item item)
    signal typed(string text)
    /// The person goes up from the first row.
    signal exited

    /// Moves the row focus, and shows the row.
    function go(row: int): void {
        if (list.count > 0) {
            list.currentIndex = Math.max(0, Math.min(row, list.count - 1));
            list.positionViewAtIndex(list.currentIndex, ListView.Contain);
            const bottom = list.currentItem.y + list.currentItem.height + list.bottomMargin;
            list.contentY = Math.max(list.contentY, bottom - list.height);
        }
    }

    function press(event: KeyEvent): void {
        const page = Math.max(1, Math.floor((list.height - list.bottomMargin) / Theme.rowHeight) - 1);
        const steps = {[Qt.Key_Down]: 1, [Qt.Key_Up]: -1, [Qt.Key_PageDown]: page,
            [Qt.Key_PageUp]: -page, [Qt.Key_Home]: -list.count, [Qt.Key_End]: list.count};
        const others = Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier;
        event.accepted = true;
        if (event.key === Qt.Key_Up && list.currentIndex <= 0) {
            root.exited();
        } else if (steps[event.key] !== undefined) {
            root.go(list.currentIndex + steps[event.key]);
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            root.edited(list.currentIndex);
        } else if (event.key === Qt.Key_Delete) {
            root.deleteAsked(list.currentIndex);
        } else if (event.key === Qt.Key_Menu
                   || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier)) {
            root.menuRequested(list.currentIndex, list.currentItem);
        } else if (event.text.length > 0 && event.text >= " " && event.key !== Qt.Key_Escape
                   && !(event.modifiers & others)) {
            root.typed(event.text);
        } else {
            event.accepted = false;
        }
    }

    onActiveFocusChanged: if (activeFocus && list.currentIndex < 0) list.currentIndex = 0

    ListView {
        id: list
        property string kept
        property real keptOffset: 0

        anchors.fill: parent
        focus: true
        activeFocusOnTab: count > 0 || activeFocus
        clip: root.isScrollable
        interactive: root.isScrollable
        bottomMargin: root.roomBelow
        boundsBehavior: Flickable.StopAtBounds
        highlightFollowsCurrentItem: false
        keyNavigationEnabled: false
        currentIndex: -1
        cacheBuffer: 2 * Theme.rowHeight
        model: root.rows
        Accessible.role: Accessible.List
        Accessible.name: "Saved sessions"
        Keys.onPressed: event => root.press(event)

        delegate: SessionRow {
            id: row
            required property int index

            width: list.width
            table: root.table
            hasRing: KeyboardUse.isCurrent && activeFocus
            onTriggered: {
                list.currentIndex = index;
                row.forceActiveFocus(Qt.MouseFocusReason);
                root.edited(index);
            }
            onMenuRequested: item => {
                list.currentIndex = index;
                root.menuRequested(index, item);
            }
        }

        ScrollMark {
            parent: list
            view: list
            visible: root.isScrollable && hidden > 0
        }

        Connections {
            target: root.rows
            function onModelAboutToBeReset(): void {
                list.kept = root.rows.keepsPlace ? root.rows.recordID(list.currentIndex) : "";
                list.keptOffset = root.rows.keepsPlace ? list.contentY - list.originY : 0;
            }
            function onModelReset(): void {
                list.currentIndex = root.rows.rowOf(list.kept);
                list.contentY = list.originY + list.keptOffset;
                list.returnToBounds();
                if (root.activeFocus && list.currentIndex < 0) {
                    list.currentIndex = 0;
                }
            }
        }
    }
}
