import QtQuick
import Kestry

/// What the next session is for: a client, and one of its projects when it has any. It stays
/// open after a choice, so that the panel does not shrink away under the pointer.
Column {
    id: root

    required property SessionBridge session
    required property NotchSurface surface

    spacing: Theme.tightSpacing

    TargetSection {
        width: root.width
        caption: "Client"
        rows: root.session.clients
        onChosen: recordID => root.session.chooseClient(recordID)
    }

    ClientNameField {
        width: root.width
        session: root.session
        surface: root.surface
        placeholder: "New client"
    }

    TargetSection {
        width: root.width
        caption: "Project"
        rows: root.session.projects
        visible: root.session.choosesProject
        onChosen: recordID => root.session.chooseProject(recordID)
    }
}
