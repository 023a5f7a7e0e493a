import QtQuick
import Kestry

/// The panel of the session in progress.
Column {
    id: root

    required property SessionBridge session
    required property NotchSurface surface

    spacing: Theme.tightSpacing

    Row {
        width: root.width
        spacing: Theme.spacing

        SessionTitleField {
            width: parent.width - controls.width - parent.spacing
            session: root.session
            surface: root.surface
        }

        SessionControls {
            id: controls
            session: root.session
        }
    }

    Row {
        readonly property real columnWidth: (width - spacing) / 2

        width: root.width
        spacing: Theme.factColumnSpacing

        FactLabel {
            width: project.visible ? parent.columnWidth : parent.width
            caption: "Client"
            value: root.session.clientName
        }

        FactLabel {
            id: project
            width: parent.columnWidth
            caption: "Project"
            value: root.session.projectName
            visible: root.session.projectName.length > 0
        }
    }
}
