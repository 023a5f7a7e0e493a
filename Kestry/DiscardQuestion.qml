import QtQuick
import KestryItems

/// Asks before what was changed in a form is dropped.
QuestionSheet {
    title: "Discard changes?"
    message: "What you changed in this form is not saved yet."
    action: "Discard"
    cancel: "Keep editing"
}
