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
    required property SessionExport exporter
    readonly property bool isSessions: root.destination === "Sessions"
    readonly property bool isWithoutClient: root.destination === "Client" && !root.hasClient

    Text {
        x: Theme.pageMargin
        y: Theme.pageMargin
        text: root.destination
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.pageTitleFont
        font.weight: Font.DemiBold
        visible: !root.isSessions && !root.isWithoutClient
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
}
