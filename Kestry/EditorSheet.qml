import QtQuick
import Kestry

/// Shows the form that is open, in a view of its own each time.
FocusScope {
    id: root

    required property EditorForms forms
    readonly property bool isOpen: root.forms.current !== null

    function follow(): void {
        // The view gets its form for good: it may outlive its being current.
        if (root.forms.current) {
            view.setSource("EditorView.qml", {"form": root.forms.current});
        } else {
            view.source = "";
        }
    }

    focus: visible && enabled // again, once what lay over it has gone
    Component.onCompleted: root.follow()

    Loader {
        id: view
        anchors.fill: parent
        focus: true
    }

    Connections {
        target: root.forms
        function onChanged(): void { root.follow(); }
    }
}
