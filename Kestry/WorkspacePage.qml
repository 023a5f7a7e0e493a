import QtQuick
import Kestry
import KestryItems

/// The page of a destination.
Item {
    id: root

    required property string destination
    /// Whether the client whose page this may be is there.
    required property bool hasClient
    required property SessionsBridge sessions
    required property ClientDashboardBridge dashboard
    required property SessionExport exporter
    required property SettingsBridge settings
    /// How far the page is scrolled.
    readonly property real scrolled: (clientPage.item as ClientDashboardView)?.scrolled ?? 0
    readonly property bool isSessions: root.destination === "Sessions"
    readonly property bool isClient: root.destination === "Client" && root.hasClient
    readonly property bool isSettings: root.destination === "Settings"
    readonly property bool isWithoutClient: root.destination === "Client" && !root.hasClient

    /// Takes the keys that scroll, also while the keyboard is elsewhere in the window.
    function press(event: KeyEvent): void {
        const page = (clientPage.item as ClientDashboardView)?.page
            ?? (settingsPage.item as AppSettingsView)?.page;
        event.accepted = false;
        if (page && (event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp)) {
            page.press(event);
        }
    }

    Text {
        x: Theme.pageMargin
        y: Theme.pageMargin
        text: root.destination
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.pageTitleFont
        font.weight: Font.DemiBold
        visible: !root.isSessions && !root.isClient && !root.isSettings && !root.isWithoutClient
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    EmptyState {
        anchors.centerIn: parent
        width: Math.min(Theme.emptyMaximumWidth, root.width - 2 * Theme.pageMargin)
        symbol: "person.crop.square"
        title: "Select a client"
        line: "Choose a client in the sidebar, or use + to add one."
        visible: root.isWithoutClient
    }

    Loader {
        anchors.fill: parent
        active: root.isSessions
        sourceComponent: SessionsView {
            sessions: root.sessions
            exporter: root.exporter
        }
    }

    Loader {
        id: clientPage
        anchors.fill: parent
        active: root.isClient
        sourceComponent: ClientDashboardView {
            dashboard: root.dashboard
            exporter: root.exporter
        }
    }

    Loader {
        id: settingsPage
        anchors.fill: parent
        active: root.isSettings
        sourceComponent: AppSettingsView {
            settings: root.settings
            exporter: root.exporter
        }
    }
}
