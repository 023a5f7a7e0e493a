import QtQuick
import KestryItems

/// Asks before a session is deleted.
QuestionSheet {
    title: "Delete this session?"
    message: "This removes the session and its earnings from your totals. This cannot be undone."
    action: "Delete session"
    cancel: "Cancel"
}
