import QtQuick
import KestryItems

/// Asks before the backup takes the place of the ledger.
QuestionSheet {
    title: "Restore last backup?"
    message: "This replaces the working ledger with the last valid backup. The original ledger is preserved in the data folder with a unique name, and any recovered timer is paused. Recent changes missing from the backup will not appear in your restored totals."
    action: "Restore last backup"
    cancel: "Cancel"
}
