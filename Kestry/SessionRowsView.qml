import QtQuick
import Kestry
import KestryItems

/// The rows of a list of sessions: the one in progress, and the saved ones below it, which the
/// keyboard reaches from one another. Without a height of its own it is as high as its rows.
FocusScope {
    id: root

    required property SessionList list
    required property TableColumns table
    property bool isScrollable: false
    /// Below the last row, where it scrolls.
    property real roomBelow: 0
    readonly property alias count: saved.count

    /// The session whose row had the keyboard is over.
    signal abandoned

    /// Moves the keyboard to the rows, of which there may be none but that of the session in
    /// progress.
    function enter(): void {
        if (saved.count > 0) {
            saved.forceActiveFocus(Qt.TabFocusReason);
        } else if (activeSession.visible) {
            activeSession.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    /// Moves the keyboard to a saved session.
    function enterAt(row: int): void {
        saved.go(row);
        root.enter();
    }

    implicitHeight: entrance.y + saved.contentHeight

    ActiveSessionRow {
        id: activeSession
        width: root.width
        visible: root.list.showsActive
        onVisibleChanged: {
            if (!visible && activeFocus) {
                root.abandoned();
                root.enter();
            }
        }
        session: root.list.active
        elapsed: root.list.elapsed
        value: root.list.activeValue
        spoken: root.list.activeSpoken
        table: root.table
        onTriggered: root.list.editActive()
        onMenuRequested: item => root.list.openActiveMenu(item)
        onExited: root.enter()
    }

    TableEntrance {
        id: entrance
        y: activeSession.visible ? activeSession.height + Theme.tightSpacing : 0
        width: root.width
        height: Math.max(0, root.height - y)
        context: root.list.revealID

        SavedSessionList {
            id: saved
            anchors.fill: parent
            focus: true
            rows: root.list.rows
            table: root.table
            isScrollable: root.isScrollable
            roomBelow: root.roomBelow
            onEdited: row => root.list.edit(row)
            onDeleteAsked: row => root.list.askToDelete(row)
            onMenuRequested: (row, item) => root.list.openMenu(row, item)
            onTyped: text => {
                const found = root.list.typeAhead(text, saved.currentRow);
                if (found >= 0) {
                    saved.go(found);
                }
            }
            onExited: {
                if (activeSession.visible) {
                    activeSession.forceActiveFocus(Qt.BacktabFocusReason);
                }
            }
        }
    }
}
