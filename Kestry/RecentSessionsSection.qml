import QtQuick
import Kestry
import KestryItems

/// The few newest sessions of a month, and the way to all of them.
FocusScope {
    id: root

    required property OverviewBridge overview
    readonly property bool isEmpty: root.overview.sessions.isEmpty

    implicitHeight: isEmpty ? header.y + Theme.noSessionsHeight : rows.y + rows.implicitHeight

    TableColumns {
        id: table
        width: root.width
        isOverview: true
    }

    SectionHeading {
        id: heading
        width: parent.width
        title: "Recent sessions"

        ViewAllButton {
            x: Theme.rowPadding // so that its arrow ends where the columns do
            onTriggered: root.overview.viewAll()
        }
    }

    RecentSessionsHeader {
        id: header
        anchors.top: heading.bottom
        anchors.topMargin: Theme.spacing
        width: parent.width
        table: table
        visible: !root.isEmpty
    }

    SessionRowsView {
        id: rows
        x: -Theme.rowPadding
        y: header.y + header.height + Theme.tightSpacing
        width: parent.width + 2 * Theme.rowPadding
        height: implicitHeight
        focus: true
        visible: !root.isEmpty
        list: root.overview.sessions
        table: table
    }

    Text {
        y: header.y
        width: parent.width
        height: Theme.noSessionsHeight
        text: root.overview.emptyText
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        visible: root.isEmpty
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
