import QtQuick
import Kestry
import KestryItems

/// The length of a session. The up and down arrow keys step it.
Column {
    id: root

    required property EntryForm form

    spacing: Theme.spacing

    Row {
        width: root.width
        spacing: Theme.fieldSpacing

        FormTextField {
            width: (root.width - Theme.fieldSpacing) / 2
            label: "Hours"
            text: root.form.hours
            hint: root.form.durationHint
            showsHint: false
            canStep: true
            onStepped: by => root.form.stepHours(by)
            onEdited: text => root.form.hours = text
            onSubmitted: root.form.save()
        }

        FormTextField {
            width: (root.width - Theme.fieldSpacing) / 2
            label: "Minutes"
            text: root.form.minutes
            hint: root.form.durationHint
            showsHint: false
            canStep: true
            onStepped: by => root.form.stepMinutes(by)
            onEdited: text => root.form.minutes = text
            onSubmitted: root.form.save()
        }
    }

    FormNote {
        width: root.width
        text: root.form.durationHint
        visible: text.length > 0
        Accessible.ignored: true // told with both fields
    }

    FormNote {
        width: root.width
        text: "Changing the duration replaces recorded work intervals with one continuous interval from the start time. Pauses are preserved when only the description or start time changes."
    }
}
