import QtQuick
import Kestry

/// What a form asks before something is lost.
Loader {
    id: root

    required property EditorForm form

    focus: active
    active: root.form.question !== EditorForm.NoQuestion
    source: root.form.question === EditorForm.DeleteSession ? "DeleteQuestion.qml" : "DiscardQuestion.qml"

    Connections {
        target: root.item
        function onConfirmed(): void { root.form.confirm(); }
        function onCancelled(): void { root.form.goOn(); }
    }
}
