pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// The fields of the form that is open.
Column {
    id: root

    required property EditorForm form
    readonly property bool isClient: root.form.kind === EditorForm.Client
    readonly property bool isProject: root.form.kind === EditorForm.Project
    readonly property bool isSession: root.form.kind === EditorForm.Session

    spacing: Theme.fieldSpacing

    FormTextField {
        id: nameField
        width: root.width
        label: root.isClient ? "Client name" : root.isProject ? "Project name" : "Session title"
        placeholder: root.isSession ? "Session title (optional)" : ""
        text: root.form.name
        onEdited: text => root.form.name = text
        onSubmitted: root.form.save()
    }

    FormToggle {
        width: root.width
        label: "Use projects"
        isOn: root.form.projectsEnabled
        visible: root.isClient
        onToggled: root.form.projectsEnabled = !root.form.projectsEnabled
    }

    FormTextField {
        width: root.width
        label: root.isClient ? "Hourly rate (USD)" : "Rate (USD / hour)"
        placeholder: "150.00"
        text: root.form.rate
        visible: root.isProject || (root.isClient && !root.form.projectsEnabled)
        onEdited: text => root.form.rate = text
        onSubmitted: root.form.save()
    }

    Text {
        width: root.width
        text: root.form.projectsEnabled
            ? "Set hourly rates in each project. Existing sessions keep their saved rates."
            : "New sessions use this client’s rate. Existing projects and time remain saved."
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        wrapMode: Text.Wrap
        visible: root.isClient
    }

    Column {
        width: root.width
        visible: root.isSession

        Repeater {
            model: root.form.projects
            delegate: SidebarRow {
                required property string recordID
                required property string name
                required property bool isChosen

                width: root.width
                label: name
                isCurrent: isChosen
                symbol: isChosen ? "checkmark" : ""
                onTriggered: root.form.chooseProject(recordID)
            }
        }
    }

    Connections {
        target: root.form
        function onOpened(): void {
            if (root.form.kind !== EditorForm.None) {
                nameField.beginEditing();
            }
        }
    }

    Component.onCompleted: nameField.beginEditing()
}
