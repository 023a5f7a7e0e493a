import QtQuick
import Kestry
import KestryItems

/// The title of the next session, or of the one in progress.
Rectangle {
    id: root

    required property SidebarSession box
    required property SessionBridge session
    readonly property bool isEditing: field.activeFocus

    implicitHeight: Theme.boxFieldHeight
    radius: Theme.controlRadius
    color: Theme.workspace.field
    border.width: root.isEditing ? Theme.ringWidth : 1
    border.color: root.isEditing ? Theme.workspace.accent : Theme.workspace.controlLine

    InlineSessionTitleField {
        id: field
        objectName: "titleField"
        anchors.fill: parent
        anchors.leftMargin: Theme.controlPadding
        anchors.rightMargin: Theme.controlPadding
        activeFocusOnTab: true
        colors: Theme.workspace
        fontSize: Theme.bodyFont
        text: root.box.titleText
        suggestions: root.isEditing ? root.session.titleSuggestions(text) : []
        onEdited: newText => root.box.typeTitle(newText)
        onSubmitted: root.box.submitTitle()
        onCancelled: root.box.cancelTitle()
        onEditingChanged: editing => {
            if (editing) {
                root.box.beginTitle();
            } else {
                root.box.endTitle();
            }
        }
    }
}
