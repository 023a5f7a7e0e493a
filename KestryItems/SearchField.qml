import QtQuick
import KestryItems

/// A line to search with, in a capsule.
FocusScope {
    id: root

    required property string label
    required property string text

    signal edited(string text)
    /// The person goes on to what was found.
    signal exited

    implicitHeight: Theme.fieldHeight
    implicitWidth: Theme.searchMaximum

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Theme.workspace.field
        border.width: input.activeFocus ? Theme.ringWidth : 1
        border.color: input.activeFocus ? Theme.workspace.accent : Theme.workspace.controlLine
    }

    Symbol {
        id: glyph
        x: Theme.searchPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.sidebarSymbolSize
        height: Theme.sidebarSymbolSize
        name: "magnifyingglass"
        color: Theme.workspace.secondaryText
    }

    TextInput {
        id: input
        anchors.left: glyph.right
        anchors.leftMargin: Theme.spacing
        anchors.right: clearButton.visible ? clearButton.left : parent.right
        anchors.rightMargin: clearButton.visible ? 0 : Theme.searchPadding
        anchors.verticalCenter: parent.verticalCenter
        focus: true
        text: root.text
        color: Theme.workspace.primaryText
        selectionColor: Theme.workspace.accent
        selectedTextColor: Theme.workspace.accentText
        font.pixelSize: Theme.timerFont
        selectByMouse: true
        clip: true
        activeFocusOnTab: true
        Accessible.role: Accessible.EditableText
        Accessible.name: root.label
        onTextEdited: root.edited(text)
        Keys.onEscapePressed: event => {
            event.accepted = text.length > 0;
            root.edited("");
        }
        Keys.onDownPressed: root.exited()
        Keys.onReturnPressed: root.exited()
        Keys.onEnterPressed: root.exited()
    }

    Text {
        anchors.fill: input
        text: root.label
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font: input.font
        elide: Text.ElideRight
        visible: input.text.length === 0 && input.preeditText.length === 0
        Accessible.ignored: true
    }

    Pressable {
        id: clearButton
        anchors.right: parent.right
        width: Theme.fieldHeight
        height: parent.height
        label: "Clear search"
        visible: root.text.length > 0
        onTriggered: {
            root.edited("");
            input.forceActiveFocus();
        }

        Symbol {
            anchors.centerIn: parent
            width: Theme.sidebarSymbolSize
            height: Theme.sidebarSymbolSize
            name: "xmark.circle.fill"
            color: clearButton.isHighlighted ? Theme.workspace.primaryText : Theme.workspace.secondaryText
        }
    }
}
