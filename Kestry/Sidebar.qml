pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// The ways to the pages, the clients, and the session. What has no room scrolls.
Rectangle {
    id: root

    required property WorkspaceBridge workspace
    required property SidebarSession box
    required property SessionBridge session

    /// The choice of what the next session is for is wanted below an item.
    signal targetAsked(item: Item)

    function contains(item: Item): bool {
        for (let each = item; each; each = each.parent) {
            if (each === content) {
                return true;
            }
        }
        return false;
    }

    /// Scrolls to what has the keyboard.
    function follow(item: Item): void {
        if (root.contains(item) && scroller.interactive) {
            const top = item.mapToItem(content, 0, 0).y;
            scroller.contentY = Math.max(top + item.height + Theme.spacing - scroller.height,
                Math.min(scroller.contentY, top - Theme.spacing), 0);
        }
    }

    color: Theme.workspace.surface
    Accessible.role: Accessible.Pane
    Accessible.name: "Sidebar"

    Flickable {
        id: scroller
        objectName: "scroller"
        anchors.fill: parent
        contentWidth: width
        contentHeight: Math.max(height, content.leastHeight)
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: interactive

        Item {
            id: content
            /// With room for one client.
            readonly property real leastHeight: heading.y + heading.height + Theme.sidebarRowHeight
                + controls.height + settings.height + 3 * Theme.sidebarPadding

            width: scroller.width
            height: scroller.contentHeight

            Column {
                id: pages
                x: Theme.sidebarPadding
                y: Theme.sidebarTop
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
                anchors.left: pages.left
                anchors.leftMargin: Theme.controlPadding
                anchors.right: addButton.left
                anchors.top: pages.bottom
                anchors.topMargin: Theme.sidebarPadding
                height: Theme.sidebarHeadingHeight
                text: "Clients"
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.bodyFont
                font.letterSpacing: 0.2
                elide: Text.ElideRight
                verticalAlignment: Text.AlignVCenter
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            IconButton {
                id: addButton
                anchors.right: pages.right
                anchors.verticalCenter: heading.verticalCenter
                symbol: "plus"
                label: "Add client"
                onTriggered: root.workspace.newClient()
            }

            ListView {
                id: clients
                objectName: "clients"
                anchors.left: pages.left
                anchors.right: pages.right
                anchors.top: heading.bottom
                anchors.bottom: controls.top
                anchors.bottomMargin: Theme.sidebarPadding
                clip: true
                spacing: Theme.tightSpacing / 2
                boundsBehavior: Flickable.StopAtBounds
                // One stop for Tab, and arrow keys in it: rows that are out of sight are not made.
                activeFocusOnTab: count > 0 || activeFocus
                highlightFollowsCurrentItem: false
                currentIndex: -1
                model: root.workspace.clients
                onActiveFocusChanged: if (activeFocus && currentIndex < 0) currentIndex = 0
                Keys.onPressed: event => {
                    event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
                    if (event.accepted) {
                        currentIndex = event.key === Qt.Key_Home ? 0 : count - 1;
                    }
                }
                Accessible.role: Accessible.List
                Accessible.name: "Clients"
                delegate: SidebarRow {
                    id: row
                    required property string recordID
                    required property string name
                    required property var logo
                    required property bool isChosen
                    required property int index

                    width: clients.width
                    activeFocusOnTab: false
                    label: name
                    isCurrent: isChosen
                    onTriggered: root.workspace.chooseClient(recordID)
                    onActiveFocusChanged: if (activeFocus) clients.positionViewAtIndex(index, ListView.Contain)

                    ClientAvatar {
                        objectName: "avatar"
                        size: row.markSize
                        name: row.name
                        logo: row.logo
                    }
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
                wrapMode: Text.Wrap
                visible: clients.count === 0
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            SidebarSessionControls {
                id: controls
                anchors.left: pages.left
                anchors.right: pages.right
                anchors.bottom: settings.top
                anchors.bottomMargin: Theme.sidebarPadding
                box: root.box
                session: root.session
                onTargetAsked: item => root.targetAsked(item)
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
    }

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged(): void {
            root.follow(root.Window.window.activeFocusItem);
        }
    }
}
