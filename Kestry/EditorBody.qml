import QtQuick
import Kestry
import KestryItems

/// The fields of a form, which scroll where the window is too low for them.
ScrollingPage {
    id: root

    required property EditorForm form
    /// Beside the fields, for the mark that tells where they are scrolled to.
    required property real margin

    function viewOf(kind: int): string {
        switch (kind) {
        case EditorForm.Client:
            return "ClientFormView.qml";
        case EditorForm.Project:
            return "ProjectFormView.qml";
        case EditorForm.Entry:
            return "EntryFormView.qml";
        default:
            return "ActiveSessionFormView.qml";
        }
    }

    roomAbove: Theme.fieldSpacing * 2
    contentHeight: fields.implicitHeight

    Loader {
        id: fields
        width: root.width - root.margin
        Component.onCompleted: setSource(root.viewOf(root.form.kind), {"form": root.form})
    }
}
