import QtQuick
import KestryItems

/// A labelled line for a password. What is typed is neither shown nor told to anybody who reads
/// the screen: the line that holds it is none of theirs, and the frame around it stands for it.
Column {
    id: root

    required property string label
    readonly property alias secret: input.text

    signal submitted

    function beginEditing(): void {
        input.forceActiveFocus();
        input.selectAll();
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

    FocusScope {
        id: scope
        width: root.width
        height: Theme.fieldHeight
        Accessible.role: Accessible.EditableText
        Accessible.name: root.label
        Accessible.focusable: true
        Accessible.description: "What you type is not shown."
        onActiveFocusChanged: {
            if (activeFocus) {
                KeyboardUse.tellFocus(scope);
            }
        }

        Rectangle {
            anchors.fill: parent
            radius: Theme.controlRadius
            color: Theme.workspace.surface
            border.width: input.activeFocus ? Theme.ringWidth : 1
            border.color: input.activeFocus ? Theme.workspace.accent : Theme.workspace.controlLine
        }

        TextInput {
            id: input
            anchors.fill: parent
            anchors.leftMargin: Theme.controlPadding
            anchors.rightMargin: Theme.controlPadding
            color: Theme.workspace.primaryText
            selectionColor: Theme.workspace.accent
            selectedTextColor: Theme.workspace.accentText
            font.pixelSize: Theme.timerFont
            verticalAlignment: TextInput.AlignVCenter
            selectByMouse: true
            clip: true
            focus: true
            echoMode: TextInput.Password
            inputMethodHints: Qt.ImhSensitiveData | Qt.ImhHiddenText
            activeFocusOnTab: true
            Accessible.ignored: true
            onAccepted: root.submitted()
        }
    }
}
