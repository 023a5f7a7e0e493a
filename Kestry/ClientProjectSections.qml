import QtQuick
import Kestry
import KestryItems

/// What the page of a client with projects has below its figures.
Column {
    id: root

    required property ClientDashboardBridge dashboard

    spacing: Theme.dashboardSpacing

    ClientProjects {
        width: parent.width
        dashboard: root.dashboard
    }

    ClientRecentSessions {
        width: parent.width
        dashboard: root.dashboard
    }
}
