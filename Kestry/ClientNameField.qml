import QtQuick
import Kestry

/// The name of a client to add, with its button.
Row {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    required property string placeholder

    signal added

    function submit(): void {
        if (input.text.trim().length === 0) {
            input.beginEditing();
        } else if (root.session.addClient(input.text)) {
            input.text = "";
            input.endEditing();
            root.added();
        }
    }

    function beginEditing(): void {
        input.beginEditing();
    }

    spacing: Theme.spacing

    Rectangle {
        width: root.width - addButton.width - root.spacing
        height: Theme.controlHeight
        radius: Theme.controlRadius
        color: Qt.alpha(Theme.line, Theme.fieldOpacity)
        border.color: input.editing ? Theme.accent : "transparent"

        Text {
            anchors.fill: input
            text: root.placeholder
            color: Theme.secondaryText
            font: input.font
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            visible: input.text.length === 0 && input.preeditText.length === 0
            Accessible.ignored: true
        }

        PanelTextInput {
            id: input
            anchors.fill: parent
            anchors.leftMargin: Theme.controlPadding
            anchors.rightMargin: Theme.controlPadding
            surface: root.surface
            onSubmitted: root.submit()
            onCancelled: endEditing()
            Accessible.role: Accessible.EditableText
            Accessible.name: "Client name"
        }

        MouseArea {
            anchors.fill: parent
            enabled: !input.editing
            cursorShape: Qt.IBeamCursor
            onPressed: input.beginEditing()
        }
    }

    ActionButton {
        id: addButton
        symbol: "plus"
        label: "Add client"
        isPrimary: !root.session.hasClients
        onTriggered: root.submit()
    }
}
