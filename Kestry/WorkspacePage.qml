import QtQuick
import Kestry
import KestryItems

/// The page of a destination.
Item {
    id: root

    required property string destination
    /// Whether the client whose page this may be is there.
    required property bool hasClient
    required property OverviewBridge overview
    required property SessionsBridge sessions
    required property ClientDashboardBridge dashboard
    required property SessionExport exporter
    required property SettingsBridge settings
    /// How far the page is scrolled, and the main menu with it.
    readonly property real scrolled: root.isSettings ? 0 : root.scroller?.contentY ?? 0
    /// Null for a page that does not scroll as one.
    readonly property ScrollingPage scroller: (overviewPage.item as OverviewView)?.page
        ?? (clientPage.item as ClientDashboardView)?.page
        ?? (settingsPage.item as AppSettingsView)?.page ?? null
    readonly property bool isOverview: root.destination === "Overview"
    readonly property bool isSessions: root.destination === "Sessions"
    readonly property bool isClient: root.destination === "Client" && root.hasClient
    readonly property bool isSettings: root.destination === "Settings"
    readonly property bool isWithoutClient: root.destination === "Client" && !root.hasClient

    /// Takes the keys that scroll, also while the keyboard is elsewhere in the window.
    function press(event: KeyEvent): void {
        event.accepted = false;
        if (root.scroller && (event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp)) {
            root.scroller.press(event);
        }
    }

    /// Moves the keyboard to the page's search; false when it has none.
    function search(): bool {
        const sessions = (sessionsPage.item as SessionsView)
            ?? (clientPage.item as ClientDashboardView)?.sessions;
        sessions?.beginSearch();
        return Boolean(sessions);
    }

    function scrollToTop(): void {
        if (root.scrolled > 0) {
            root.scroller.scrollTo(0);
        }
    }

    Accessible.role: Accessible.Pane
    Accessible.name: root.destination + " page"

    EmptyState {
        anchors.centerIn: parent
        width: Math.min(Theme.emptyMaximumWidth, root.width - 2 * Theme.pageMargin)
        symbol: "person.crop.square"
        title: "Select a client"
        line: "Choose a client in the sidebar, or use + to add one."
        visible: root.isWithoutClient
    }

    ViewLoader {
        id: overviewPage
        anchors.fill: parent
        isWanted: root.isOverview
        view: Qt.resolvedUrl("OverviewView.qml")
        properties: ({"overview": root.overview})
    }

    ViewLoader {
        id: sessionsPage
        anchors.fill: parent
        isWanted: root.isSessions
        view: Qt.resolvedUrl("SessionsView.qml")
        properties: ({"sessions": root.sessions, "exporter": root.exporter})
    }

    ViewLoader {
        id: clientPage
        anchors.fill: parent
        isWanted: root.isClient
        view: Qt.resolvedUrl("ClientDashboardView.qml")
        properties: ({"dashboard": root.dashboard, "exporter": root.exporter})
    }

    ViewLoader {
        id: settingsPage
        anchors.fill: parent
        isWanted: root.isSettings
        view: Qt.resolvedUrl("AppSettingsView.qml")
        properties: ({"settings": root.settings, "exporter": root.exporter})
    }
}
