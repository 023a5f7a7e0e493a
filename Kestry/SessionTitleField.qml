import QtQuick
import Kestry

/// The session's title, to be read or typed.
Item {
    id: root

    required property SessionBridge session
    required property NotchSurface surface

    function edit(): void {
        input.text = root.session.title;
        input.beginEditing();
    }

    implicitHeight: Theme.controlHeight

    Text {
        anchors.fill: parent
        text: root.session.label
        color: Theme.primaryText
        font.pixelSize: Theme.bodyFont
        font.weight: Font.Medium
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        visible: !input.editing
        activeFocusOnTab: true
        font.underline: activeFocus
        Accessible.role: Accessible.Button
        Accessible.name: "Session title: " + root.session.label
        Accessible.description: "Double-click or press Return to edit"
        Accessible.onPressAction: root.edit()
        Keys.onReturnPressed: root.edit()

        MouseArea {
            anchors.fill: parent
            onDoubleClicked: root.edit()
        }
    }

    Text {
        anchors.fill: parent
        text: "Session title"
        color: Theme.secondaryText
        font: input.font
        verticalAlignment: Text.AlignVCenter
        visible: input.editing && input.text.length === 0 && input.preeditText.length === 0
        Accessible.ignored: true
    }

    PanelTextInput {
        id: input
        anchors.fill: parent
        visible: editing
        surface: root.surface
        Accessible.role: Accessible.EditableText
        Accessible.name: "Session title"
        onSubmitted: {
            root.session.rename(text);
            endEditing();
        }
        onCancelled: endEditing()
    }
}
