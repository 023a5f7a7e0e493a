import QtQuick
import Kestry
import KestryItems

/// The fields of a client.
Column {
    id: root

    required property ClientForm form

    spacing: Theme.fieldSpacing
    Component.onCompleted: nameField.beginEditing()

    LogoRow {
        width: root.width
        form: root.form
    }

    FormTextField {
        id: nameField
        width: root.width
        label: "Client name"
        text: root.form.name
        onEdited: text => root.form.name = text
        onSubmitted: root.form.save()
    }

    FormToggle {
        width: root.width
        label: "Use projects"
        isOn: root.form.projectsEnabled
        onToggled: root.form.projectsEnabled = !root.form.projectsEnabled
    }

    FormTextField {
        width: root.width
        label: "Hourly rate (USD)"
        placeholder: "150.00"
        text: root.form.rate
        hint: root.form.rateHint
        visible: !root.form.projectsEnabled
        onEdited: text => root.form.rate = text
        onSubmitted: root.form.save()
    }

    FormNote {
        width: root.width
        text: root.form.note
    }
}
