import QtQuick
import KestryItems

/// A labelled line to type in.
Column {
    id: root

    required property string label
    property string placeholder
    property string text

    signal edited(string text)
    signal submitted

    function beginEditing(): void {
        input.forceActiveFocus();
        input.selectAll();
    }

    spacing: Theme.tightSpacing

    Text {
        text: root.label
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        Accessible.ignored: true
    }

    Rectangle {
        width: root.width
        height: Theme.fieldHeight
        radius: Theme.controlRadius
        color: Theme.workspace.surface
        border.color: input.activeFocus
            ? Theme.workspace.accent : Theme.workspace.outline

        Text {
            anchors.fill: input
            text: root.placeholder
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font: input.font
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            visible: input.text.length === 0 && input.preeditText.length === 0
            Accessible.ignored: true
        }

        TextInput {
            id: input
            anchors.fill: parent
            anchors.leftMargin: Theme.controlPadding
            anchors.rightMargin: Theme.controlPadding
            text: root.text
            color: Theme.workspace.primaryText
            selectionColor: Theme.workspace.accent
            selectedTextColor: Theme.workspace.accentText
            font.pixelSize: Theme.timerFont
            verticalAlignment: TextInput.AlignVCenter
            selectByMouse: true
            clip: true
            activeFocusOnTab: true
            Accessible.role: Accessible.EditableText
            Accessible.name: root.label
            onTextEdited: root.edited(text)
            onAccepted: root.submitted()
        }
    }
}
