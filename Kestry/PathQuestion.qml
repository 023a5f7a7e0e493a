import QtQuick
import Kestry
import KestryItems

/// Asks for the path of a file, on a desktop without a dialog of its own for files.
FocusScope {
    id: root

    required property PathForm chooser

    focus: true
    Component.onCompleted: field.beginEditing()
    Accessible.role: Accessible.Dialog
    Accessible.name: heading.title
    Keys.onEscapePressed: root.chooser.cancel()

    SheetShade {
        anchors.fill: parent
    }

    SheetFrame {
        id: frame
        anchors.centerIn: parent
        width: Math.min(Theme.sheetWidth, root.width - 2 * Theme.pageMargin)
        contentHeight: column.implicitHeight

        Column {
            id: column
            width: frame.contentWidth
            spacing: Theme.fieldSpacing

            SheetHeading {
                id: heading
                width: parent.width
                title: root.chooser.title
                line: root.chooser.line
                onClosed: root.chooser.cancel()
            }

            FormTextField {
                id: field
                width: parent.width
                label: "File"
                text: root.chooser.path
                onEdited: text => root.chooser.path = text
                onSubmitted: root.chooser.accept()
            }

            FormMessage {
                width: parent.width
                message: root.chooser.note
            }

            Row {
                anchors.right: parent.right
                spacing: Theme.spacing

                QuietButtonStyle {
                    label: "Cancel"
                    onTriggered: root.chooser.cancel()
                }

                PrimaryButtonStyle {
                    label: root.chooser.acceptLabel
                    onTriggered: root.chooser.accept()
                }
            }
        }
    }
}
