pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// The ways to the pages, and the clients.
Rectangle {
    id: root

    required property WorkspaceBridge workspace

    color: Theme.workspace.surface

    Column {
        id: pages
        x: Theme.sidebarPadding
        y: Theme.pageMargin
        width: parent.width - 2 * x
        spacing: Theme.tightSpacing / 2

        SidebarRow {
            width: pages.width
            symbol: "square.grid.2x2"
            label: "Overview"
            isCurrent: root.workspace.destination === "Overview"
            onTriggered: root.workspace.go("Overview")
        }

        SidebarRow {
            width: pages.width
            symbol: "clock"
            label: "Sessions"
            isCurrent: root.workspace.destination === "Sessions"
            onTriggered: root.workspace.go("Sessions")
        }
    }

    Text {
        id: heading
        x: 2 * Theme.sidebarPadding
        anchors.top: pages.bottom
        anchors.topMargin: Theme.pageMargin
        height: Theme.controlHeight
        text: "Clients"
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.bodyFont
        font.letterSpacing: 0.2
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    IconButton {
        anchors.right: pages.right
        anchors.verticalCenter: heading.verticalCenter
        symbol: "plus"
        label: "Add client"
        onTriggered: root.workspace.newClient()
    }

    ListView {
        id: clients
        anchors.left: pages.left
        anchors.right: pages.right
        anchors.top: heading.bottom
        anchors.bottom: settings.top
        anchors.topMargin: Theme.spacing
        anchors.bottomMargin: Theme.spacing
        clip: true
        spacing: Theme.tightSpacing / 2
        boundsBehavior: Flickable.StopAtBounds
        model: root.workspace.clients
        delegate: SidebarRow {
            required property string recordID
            required property string name
            required property string color
            required property bool isChosen

            width: clients.width
            label: name
            dotColor: color
            isCurrent: isChosen
            onTriggered: root.workspace.chooseClient(recordID)
        }
    }

    Text {
        anchors.left: clients.left
        anchors.right: clients.right
        anchors.top: clients.top
        padding: Theme.emptyListPadding
        text: "No clients yet"
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        horizontalAlignment: Text.AlignHCenter
        visible: clients.count === 0
    }

    SidebarRow {
        id: settings
        anchors.left: pages.left
        anchors.right: pages.right
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.sidebarPadding
        symbol: "slider.horizontal.3"
        label: "Settings"
        isCurrent: root.workspace.destination === "Settings"
        onTriggered: root.workspace.openSettings()
    }
}
