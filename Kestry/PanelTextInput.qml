import QtQuick
import Kestry

/// One line of text that takes the keyboard only while it is being edited, and gives it back.
TextInput {
    id: root

    required property NotchSurface surface
    property bool editing: false

    signal submitted
    signal cancelled

    function beginEditing(): void {
        editing = true;
        surface.editingChanged(true);
        forceActiveFocus();
        selectAll();
    }

    function endEditing(): void {
        if (editing) {
            letGo();
            surface.editingChanged(false);
        }
    }

    function letGo(): void {
        editing = false;
        focus = false;
        deselect();
    }

    // The window has no keyboard until editing begins, so pressing alone must not look like focus.
    activeFocusOnPress: false
    color: Theme.primaryText
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    font.pixelSize: Theme.bodyFont
    clip: true
    selectByMouse: editing
    verticalAlignment: TextInput.AlignVCenter
    Keys.onReturnPressed: root.submitted()
    Keys.onEnterPressed: root.submitted()
    Keys.onEscapePressed: root.cancelled()

    Connections {
        target: root.surface
        function onFocusCleared(): void {
            if (root.editing) {
                root.letGo();
                root.cancelled();
            }
        }
        function onContentRebuilt(): void {
            if (root.editing) {
                root.letGo();
                root.cancelled();
            }
        }
    }
}
