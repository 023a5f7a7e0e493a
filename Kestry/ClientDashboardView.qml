import QtQuick
import Kestry
import KestryItems

/// The page of a client: what it is worth, its projects, and its sessions.
FocusScope {
    id: root

    required property ClientDashboardBridge dashboard
    required property SessionExport exporter
    readonly property bool hasClient: root.dashboard.clientID.length > 0
    readonly property alias page: page
    /// Null for a client with projects, whose page has none of its own.
    readonly property SessionsView sessions: embedded.item as SessionsView
    readonly property real scrolled: page.contentY

    Component.onCompleted: root.dashboard.open()
    Component.onDestruction: root.dashboard.close()

    ScrollingPage {
        id: page
        anchors.fill: parent
        roomAbove: Theme.pageMargin + Theme.buttonHeight
        contentHeight: content.y + content.height + Theme.pageMargin

        Column {
            id: content
            x: Theme.pageMargin
            y: Theme.pageMargin
            width: root.width - 2 * Theme.pageMargin
            spacing: Theme.dashboardSpacing

            DashboardHeading {
                // The main menu is beside it.
                width: parent.width - Theme.buttonHeight
                dashboard: root.dashboard
            }

            DashboardCards {
                width: parent.width
                dashboard: root.dashboard
            }

            ViewLoader {
                width: parent.width
                isWanted: root.hasClient && root.dashboard.hasProjects
                visible: isWanted
                view: Qt.resolvedUrl("ClientProjectSections.qml")
                properties: ({"dashboard": root.dashboard})
            }

            ViewLoader {
                id: embedded
                width: parent.width
                isWanted: root.hasClient && !root.dashboard.hasProjects
                visible: isWanted
                view: Qt.resolvedUrl("SessionsView.qml")
                properties: ({"sessions": root.dashboard.sessions, "exporter": root.exporter})
            }
        }
    }

    Connections {
        target: root.dashboard
        function onClientIDChanged(): void {
            page.scrollTo(0);
        }
    }
}
