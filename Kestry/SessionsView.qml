import QtQuick
import Kestry
import KestryItems

/// The table of recorded time: a page of its own, or part of a client's dashboard, which it makes
/// as high as its rows.
FocusScope {
    id: root

    required property SessionsBridge sessions
    required property SessionExport exporter
    readonly property bool isPage: !root.sessions.isEmbedded
    readonly property real margin: root.isPage ? Theme.pageMargin : 0

    function beginSearch(): void {
        tools.beginSearch();
    }

    implicitHeight: root.isPage ? 0 : Math.max(more.y + (more.visible ? more.height : 0),
        empty.visible ? empty.y + empty.height : 0)
    Component.onCompleted: root.sessions.open()
    Component.onDestruction: root.sessions.close()

    SessionsHeading {
        id: heading
        x: root.margin
        y: root.margin
        // The main menu is beside it.
        width: root.width - 2 * root.margin - (root.isPage ? Theme.buttonHeight : 0)
        sessions: root.sessions
    }

    MonthChip {
        id: chip
        anchors.left: heading.left
        anchors.top: heading.bottom
        anchors.topMargin: Theme.sectionSpacing
        month: root.sessions.month
        visible: month.length > 0
        onCleared: {
            root.sessions.clearMonth();
            root.beginSearch();
        }
    }

    SessionsToolRow {
        id: tools
        anchors.left: heading.left
        anchors.right: parent.right
        anchors.rightMargin: root.margin
        anchors.top: chip.visible ? chip.bottom : heading.bottom
        anchors.topMargin: Theme.sectionSpacing
        sessions: root.sessions
        exporter: root.exporter
        onExited: rows.enter()
    }

    TableColumns {
        id: table
        width: tools.width
        showsAvatar: root.isPage
    }

    SessionTableHeader {
        id: header
        anchors.left: tools.left
        anchors.right: tools.right
        anchors.top: tools.bottom
        anchors.topMargin: Theme.sectionSpacing
        sessions: root.sessions
        table: table
        visible: root.sessions.emptyTitle.length === 0
    }

    SessionRowsView {
        id: rows
        x: tools.x - Theme.rowPadding
        y: header.y + header.height + Theme.tightSpacing
        width: tools.width + 2 * Theme.rowPadding
        height: root.isPage ? Math.max(0, root.height - y) : implicitHeight
        focus: true
        list: root.sessions.list
        table: table
        isScrollable: root.isPage
        roomBelow: root.margin
        onAbandoned: root.beginSearch()
    }

    EmptyState {
        id: empty
        anchors.horizontalCenter: parent.horizontalCenter
        y: header.y + (root.isPage ? (root.height - header.y - height) / 2.5 : 0)
        width: Math.min(Theme.emptyMaximumWidth, tools.width)
        symbol: "clock"
        title: root.sessions.emptyTitle
        line: root.sessions.emptyText
        visible: title.length > 0
    }

    QuietButtonStyle {
        id: more
        x: tools.x
        y: root.isPage ? 0 : rows.y + rows.height + Theme.sectionSpacing
        label: "Show more sessions"
        visible: root.sessions.offersMore
        onTriggered: {
            const shown = rows.count;
            const hadKeyboard = activeFocus;
            root.sessions.showMore();
            if (hadKeyboard && !visible) {
                rows.enterAt(shown); // the first of those that came stands where the button stood
            }
        }
    }
}
