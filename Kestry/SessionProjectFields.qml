import QtQuick
import Kestry
import KestryItems

/// The choice of a session's client and project.
Column {
    id: root

    required property SessionProjectChoice choice
    readonly property bool isCreating: root.choice.isCreating

    onIsCreatingChanged: {
        if (!isCreating && root.choice.usesProjects) {
            projectField.takeFocus(); // what had the keyboard is gone
        }
    }
    spacing: Theme.fieldSpacing

    FormMenuField {
        width: root.width
        label: "Client"
        value: root.choice.clientName
        onOpened: item => root.choice.openClients(item)
    }

    FormMenuField {
        id: projectField
        width: root.width
        label: "Project"
        value: root.choice.projectName
        visible: root.choice.usesProjects && !root.isCreating
        onOpened: item => root.choice.openProjects(item)
    }

    FormFact {
        width: root.width
        label: root.choice.projectName
        visible: !root.choice.usesProjects
    }

    NewProjectFields {
        id: newProject
        width: root.width
        choice: root.choice
        visible: root.isCreating
    }

    Connections {
        target: root.choice
        function onNewProjectWanted(): void { newProject.beginEditing(); }
    }
}
