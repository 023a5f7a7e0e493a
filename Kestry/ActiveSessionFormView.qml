import QtQuick
import Kestry
import KestryItems

/// The fields of the session in progress.
Column {
    id: root

    required property ActiveSessionForm form

    spacing: Theme.fieldSpacing
    Component.onCompleted: nameField.beginEditing()

    FormTextField {
        id: nameField
        width: root.width
        label: "Session title"
        placeholder: "Session title (optional)"
        text: root.form.name
        onEdited: text => root.form.name = text
        onSubmitted: root.form.save()
    }

    SessionProjectFields {
        width: root.width
        choice: root.form.choice
    }

    Column {
        width: root.width

        FormFact {
            width: root.width
            label: "Elapsed"
            value: root.form.elapsed
        }

        FormFact {
            width: root.width
            label: "Paused at"
            value: root.form.pausedAt
            visible: value.length > 0
        }
    }
}
