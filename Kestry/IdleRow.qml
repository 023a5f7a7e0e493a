import QtQuick
import Kestry
import KestryItems

/// With no session: what the next one is for, and its start; without clients, the way to the first.
Item {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    required property var menus

    implicitHeight: Theme.controlHeight

    TargetButton {
        objectName: "target"
        anchors.left: parent.left
        anchors.right: action.left
        anchors.rightMargin: Theme.spacing
        session: root.session
        visible: root.session.hasClients
        onTriggered: root.menus.openTarget(this)
    }

    Text {
        objectName: "invitation"
        anchors.left: parent.left
        anchors.leftMargin: Theme.tightSpacing
        anchors.right: action.left
        anchors.rightMargin: Theme.spacing
        height: parent.height
        text: "Add your first client"
        textFormat: Text.PlainText
        color: Theme.panelSecondaryText
        font.pixelSize: Theme.panelBodyFont
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        visible: !root.session.hasClients
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    ActionButton {
        id: action
        objectName: "action"
        anchors.right: parent.right
        symbol: root.session.hasClients ? "play.fill" : "plus"
        label: root.session.hasClients ? "Start" : "Add client"
        onTriggered: {
            if (root.session.hasClients) {
                root.session.start();
            } else {
                root.session.askForClient();
                root.surface.dashboard();
            }
        }
    }
}
