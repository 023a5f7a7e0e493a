import QtQuick
import Kestry
import KestryItems

/// What a form asks before something is lost.
Loader {
    id: root

    required property EditorForm form

    focus: active
    active: root.form.question !== EditorForm.NoQuestion
    sourceComponent: root.form.question === EditorForm.DeleteSession ? deletion : discarding

    Component {
        id: deletion

        DeleteQuestion {
            onConfirmed: root.form.confirm()
            onCancelled: root.form.goOn()
        }
    }

    Component {
        id: discarding

        QuestionSheet {
            title: "Discard changes?"
            message: "What you changed in this form is not saved yet."
            action: "Discard"
            cancel: "Keep editing"
            onConfirmed: root.form.confirm()
            onCancelled: root.form.goOn()
        }
    }
}
