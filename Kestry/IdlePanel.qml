import QtQuick
import Kestry

/// The panel with no session: what the next one is for, and its start.
Column {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    property bool isChoosing: false

    spacing: Theme.spacing

    ClientNameField {
        width: root.width
        session: root.session
        surface: root.surface
        placeholder: "Add your first client"
        visible: !root.session.hasClients
    }

    Row {
        width: root.width
        spacing: Theme.spacing
        visible: root.session.hasClients

        TargetPicker {
            width: parent.width - startButton.width - parent.spacing
            session: root.session
            isOpen: root.isChoosing
            onTriggered: root.isChoosing = !root.isChoosing
        }

        ActionButton {
            id: startButton
            symbol: "play.fill"
            label: "Start"
            onTriggered: root.session.start()
        }
    }

    TargetList {
        width: root.width
        session: root.session
        surface: root.surface
        visible: root.isChoosing && root.session.hasClients
    }

    Connections {
        target: root.surface
        function onShownChanged(): void {
            root.isChoosing = root.isChoosing && root.surface.shown;
        }
    }
}
