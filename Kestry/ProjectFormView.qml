import QtQuick
import Kestry
import KestryItems

/// The fields of a project.
Column {
    id: root

    required property ProjectForm form

    spacing: Theme.fieldSpacing
    Component.onCompleted: nameField.beginEditing()

    FormFact {
        width: root.width
        label: "Client"
        value: root.form.clientName
    }

    FormTextField {
        id: nameField
        width: root.width
        label: "Project name"
        text: root.form.name
        onEdited: text => root.form.name = text
        onSubmitted: root.form.save()
    }

    FormTextField {
        width: root.width
        label: "Rate (USD / hour)"
        placeholder: "150.00"
        text: root.form.rate
        hint: root.form.rateHint
        onEdited: text => root.form.rate = text
        onSubmitted: root.form.save()
    }
}
