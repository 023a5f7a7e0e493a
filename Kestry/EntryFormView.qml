import QtQuick
import Kestry
import KestryItems

/// The fields of a saved session.
Column {
    id: root

    required property EntryForm form

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

    StartedField {
        width: root.width
        form: root.form
    }

    DurationFields {
        width: root.width
        form: root.form
    }

    SessionProjectFields {
        width: root.width
        choice: root.form.choice
    }

    FormToggle {
        width: root.width
        label: "Billable"
        isOn: root.form.isBillable
        onToggled: root.form.isBillable = !root.form.isBillable
    }

    FormFact {
        width: root.width
        label: "Saved hourly rate"
        value: root.form.savedRate
        visible: value.length > 0
    }

    FormNote {
        width: root.width
        text: "Changing projects keeps the saved rate. Nonbillable sessions do not contribute to earnings."
        visible: root.form.savedRate.length > 0
    }

    FormFact {
        width: root.width
        symbol: "tray"
        label: "Imported from Tallyloom"
        visible: root.form.isImported
    }
}
