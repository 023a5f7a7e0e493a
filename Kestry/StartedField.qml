import QtQuick
import Kestry
import KestryItems

/// The start of a session: a text, and a calendar page below it.
Column {
    id: root

    required property EntryForm form

    spacing: Theme.spacing

    Item {
        width: root.width
        implicitHeight: field.implicitHeight

        FormTextField {
            id: field
            width: root.width - calendarButton.width - Theme.spacing
            label: "Started"
            text: root.form.started
            hint: root.form.startedHint
            onEdited: text => root.form.started = text
            onSubmitted: root.form.save()
        }

        IconButton {
            id: calendarButton
            anchors.right: parent.right
            y: Theme.smallFont + Theme.tightSpacing + Theme.tightSpacing / 2
            symbol: "calendar"
            label: root.form.days.isOpen ? "Close calendar" : "Choose the day from a calendar"
            onTriggered: {
                if (root.form.days.isOpen) {
                    root.form.days.close();
                } else {
                    root.form.openDays();
                }
            }
        }
    }

    DayPage {
        id: page
        width: root.width
        days: root.form.days
        visible: root.form.days.isOpen
    }

    Connections {
        target: root.form.days
        function onOpenChanged(): void {
            if (root.form.days.isOpen) {
                page.grid.forceActiveFocus();
            } else {
                calendarButton.forceActiveFocus();
            }
        }
    }
}
