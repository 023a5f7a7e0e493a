import QtQuick
import Kestry

/// The session's title, to be read or typed. An edit belongs to the session that it began with:
/// when that ends, so does the edit.
Item {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    required property var menus
    /// Whose title is being typed; empty while none is.
    property string renamingSessionID: ""
    property string titleDraft: ""
    readonly property bool isEditing: renamingSessionID.length > 0

    function edit(): void {
        if (!root.isEditing && root.session.hasSession) {
            root.titleDraft = root.session.title;
            root.renamingSessionID = root.session.sessionID;
            root.surface.dismissPreview();
            root.surface.editingChanged(true);
        }
    }

    /// Writes what is typed. A title that is refused stays in the field.
    function write(): bool {
        return root.titleDraft === root.session.title
            || root.session.rename(root.renamingSessionID, root.titleDraft);
    }

    function submit(): void {
        if (root.write()) {
            root.endEditing();
        }
    }

    function endEditing(): void {
        if (root.isEditing) {
            root.renamingSessionID = "";
            root.surface.editingChanged(false);
        }
    }

    SessionTitleLabel {
        objectName: "label"
        anchors.fill: parent
        session: root.session
        surface: root.surface
        visible: !root.isEditing
        onEditAsked: root.edit()
        onMenuAsked: root.menus.openTitle(root)
    }

    InlineSessionTitleField {
        objectName: "editor"
        anchors.fill: parent
        visible: root.isEditing
        text: root.titleDraft
        suggestions: root.isEditing ? root.session.titleSuggestions(text) : []
        focusOnAppearance: root.isEditing
        onEdited: newText => root.titleDraft = newText
        onSubmitted: root.submit()
        onCancelled: root.endEditing()
        onEditingChanged: editing => {
            if (!editing) {
                root.endEditing();
            }
        }
    }

    Connections {
        target: root.session
        function onChanged(): void {
            if (root.session.sessionID !== root.renamingSessionID) {
                root.endEditing();
            }
        }
        function onTitleWanted(): void {
            if (root.isEditing) {
                root.write();
            }
        }
    }

    Connections {
        target: root.surface
        function onFocusCleared(): void {
            root.endEditing();
        }
        function onContentRebuilt(): void {
            root.endEditing();
        }
    }

    Connections {
        target: root.menus
        ignoreUnknownSignals: true
        function onEditTitleChosen(): void {
            root.edit();
        }
    }
}
