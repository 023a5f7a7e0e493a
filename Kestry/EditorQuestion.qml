import QtQuick
import Kestry
import KestryItems

/// What a form asks before something is lost.
QuestionSheet {
    id: root

    required property EditorForm form
    readonly property bool isDelete: root.form.question === EditorForm.DeleteSession

    title: isDelete ? "Delete this session?" : "Discard changes?"
    message: isDelete
        ? "This removes the session and its earnings from your totals. This cannot be undone."
        : "What you changed in this form is not saved yet."
    action: isDelete ? "Delete session" : "Discard"
    cancel: isDelete ? "Cancel" : "Keep editing"
    onConfirmed: root.form.confirm()
    onCancelled: root.form.goOn()
}
