import QtQuick
import KestryItems

/// A labelled line to type in, with a quiet hint below it where there is one.
Column {
    id: root

    required property string label
    property string placeholder
    property string text
    property string hint
    /// False where what is around the field shows the hint.
    property bool showsHint: true
    /// The up and down arrow keys ask for another value.
    property bool canStep: false

    signal edited(string text)
    signal submitted
    signal stepped(int by)

    function beginEditing(): void {
        input.forceActiveFocus();
        input.selectAll();
    }

    function step(event, by: int): void {
        event.accepted = root.canStep;
        if (root.canStep) {
            root.stepped(by);
        }
    }

    spacing: Theme.tightSpacing

    Text {
        width: parent.width
        text: root.label
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Rectangle {
        width: root.width
        height: Theme.fieldHeight
        radius: Theme.controlRadius
        color: Theme.workspace.surface
        border.width: input.activeFocus ? Theme.ringWidth : 1
        border.color: input.activeFocus
            ? Theme.workspace.accent : Theme.workspace.controlLine

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
            Accessible.description: root.hint
            Keys.onUpPressed: event => root.step(event, 1)
            Keys.onDownPressed: event => root.step(event, -1)
            onTextEdited: root.edited(text)
            onAccepted: root.submitted()
        }
    }

    Text {
        width: parent.width
        text: root.hint
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        wrapMode: Text.Wrap
        visible: root.showsHint && text.length > 0
        Accessible.ignored: true
    }
}
