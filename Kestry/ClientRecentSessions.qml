import QtQuick
import Kestry
import KestryItems

/// The newest sessions of a client with projects, and the way to all of them.
Column {
    id: root

    required property ClientDashboardBridge dashboard

    spacing: Theme.spacing

    SectionHeading {
        width: parent.width
        title: "Recent sessions"

        ViewAllButton {
            x: Theme.rowPadding // so that its arrow ends where the columns do
            onTriggered: root.dashboard.viewAll()
        }
    }

    SessionRowsView {
        x: -Theme.rowPadding
        width: root.width + 2 * Theme.rowPadding
        height: implicitHeight
        list: root.dashboard.recent
        table: TableColumns {
            width: root.width
            showsAvatar: false
        }
        visible: !root.dashboard.recent.isEmpty
    }

    Text {
        width: parent.width
        topPadding: Theme.emptySectionPadding
        bottomPadding: Theme.emptySectionPadding
        text: "No sessions yet. Start a project timer or add time from Sessions."
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.rowFont
        wrapMode: Text.Wrap
        visible: root.dashboard.recent.isEmpty
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
