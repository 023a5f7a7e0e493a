import QtQuick
import Kestry
import KestryItems

/// A new project inside the form of a session.
Column {
    id: root

    required property SessionProjectChoice choice

    function beginEditing(): void { nameField.beginEditing(); }

    spacing: Theme.fieldSpacing
    onVisibleChanged: {
        if (visible) {
            root.beginEditing();
        }
    }

    FormTextField {
        id: nameField
        width: root.width
        label: "Project name"
        text: root.choice.newProjectName
        onEdited: text => root.choice.newProjectName = text
        onSubmitted: root.choice.createProject()
    }

    FormTextField {
        width: root.width
        label: "Hourly rate (USD)"
        placeholder: "150.00"
        text: root.choice.newProjectRate
        hint: root.choice.newProjectRateHint
        onEdited: text => root.choice.newProjectRate = text
        onSubmitted: root.choice.createProject()
    }

    FormNote {
        width: root.width
        text: "New sessions use this client’s rate. Existing projects and time remain saved."
    }

    Row {
        spacing: Theme.spacing

        QuietButtonStyle {
            label: "Create project"
            onTriggered: root.choice.createProject()
        }

        QuietButtonStyle {
            label: "Cancel new project"
            onTriggered: root.choice.cancelNewProject()
        }
    }
}
