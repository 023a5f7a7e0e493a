import QtQuick
import KestryItems

/// A message over the window that waits until it has been read. Its words can be copied.
FocusScope {
    id: root

    required property string title
    required property string message

    signal dismissed

    /// What is selected, or all of it.
    function copy(): void {
        const isSelected = words.selectedText.length > 0;
        if (!isSelected) {
            words.selectAll();
        }
        words.copy();
        if (!isSelected) {
            words.deselect();
        }
    }

    focus: visible
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.title + ". " + root.message
    Keys.onEscapePressed: root.dismissed()
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Copy)) {
            event.accepted = true;
            root.copy();
        }
    }

    SheetShade {
        anchors.fill: parent
    }

    SheetFrame {
        id: frame
        anchors.centerIn: parent
        width: Math.min(Theme.alertWidth, root.width - 2 * Theme.pageMargin)
        contentHeight: column.implicitHeight

        Column {
            id: column
            width: frame.contentWidth
            spacing: Theme.spacing + Theme.tightSpacing

            Text {
                width: parent.width
                text: root.title
                textFormat: Text.PlainText
                color: Theme.workspace.primaryText
                font.pixelSize: Theme.sheetTitleFont
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            TextEdit {
                id: words
                width: parent.width
                bottomPadding: Theme.spacing
                text: root.message
                textFormat: TextEdit.PlainText
                color: Theme.workspace.secondaryText
                selectionColor: Theme.workspace.accent
                selectedTextColor: Theme.workspace.accentText
                font.pixelSize: Theme.bodyFont
                wrapMode: TextEdit.Wrap
                readOnly: true
                selectByMouse: true
                persistentSelection: true
                // The button keeps the keyboard.
                activeFocusOnPress: false
                Accessible.ignored: true
            }

            PrimaryButtonStyle {
                anchors.right: parent.right
                label: "OK"
                focus: true
                onTriggered: root.dismissed()
            }
        }
    }
}
