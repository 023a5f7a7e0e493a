import QtQuick
import Kestry
import KestryItems

/// The session box of the sidebar: the session in progress, or what the next one is to be.
FocusScope {
    id: root

    required property SidebarSession box
    required property SessionBridge session

    /// The choice of what the next session is for is wanted below an item.
    signal targetAsked(item: Item)

    function takeFocus(): void {
        if (root.session.hasSession) {
            (current.item as SidebarActiveSession)?.takeFocus();
        } else {
            (next.item as SidebarIdleSession)?.takeFocus();
        }
    }

    implicitHeight: content.implicitHeight + 2 * Theme.boxPadding

    Rectangle {
        anchors.fill: parent
        radius: Theme.boxRadius
        color: Theme.workspace.raisedSurface
        border.color: Theme.workspace.outline
    }

    Column {
        id: content
        x: Theme.boxPadding
        y: Theme.boxPadding
        width: root.width - 2 * x
        spacing: Theme.boxSpacing

        Text {
            objectName: "heading"
            width: parent.width
            text: root.box.heading
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.smallFont
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        ViewLoader {
            objectName: "remote"
            width: parent.width
            isWanted: root.box.remoteTitle.length > 0
            visible: isWanted
            view: Qt.resolvedUrl("RemoteSession.qml")
            properties: ({"box": root.box})
        }

        PrimaryButtonStyle {
            id: invitation
            objectName: "invitation"
            width: parent.width
            symbol: "plus"
            label: "Add client"
            visible: !root.session.hasSession && !root.session.hasClients
            onTriggered: root.session.askForClient()
        }

        ViewLoader {
            id: next
            objectName: "idle"
            width: parent.width
            isWanted: !root.session.hasSession && root.session.hasClients
            visible: isWanted
            view: Qt.resolvedUrl("SidebarIdleSession.qml")
            properties: ({"box": root.box, "session": root.session})
        }

        ViewLoader {
            id: current
            objectName: "active"
            width: parent.width
            isWanted: root.session.hasSession
            visible: isWanted
            view: Qt.resolvedUrl("SidebarActiveSession.qml")
            properties: ({"box": root.box, "session": root.session})
        }
    }

    Connections {
        target: next.item
        function onTargetAsked(item: Item): void { root.targetAsked(item); }
    }

    // Not before the new state shows.
    Timer {
        id: refocus
        interval: 0
        onTriggered: root.takeFocus()
    }

    // What had the keyboard goes with its state; the person goes on with what came in its place.
    Connections {
        target: root.box
        function onSwitched(): void {
            if (root.activeFocus) {
                refocus.start();
            }
        }
    }
}
