import QtQuick
import Kestry
import KestryItems

/// The form over the window. What it asks for is the form's own; nothing is kept before "Save".
FocusScope {
    id: root

    required property EditorForm form

    focus: visible
    Keys.onEscapePressed: root.form.close()
    Accessible.role: Accessible.Dialog
    Accessible.name: root.form.title

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
                width: parent.width
                title: root.form.title
                line: root.form.line
                onClosed: root.form.close()
            }

            Text {
                width: parent.width
                text: root.form.clientName
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.bodyFont
                elide: Text.ElideRight
                visible: root.form.kind !== EditorForm.Client && text.length > 0
                Accessible.name: "Client: " + text
            }

            FormFields {
                width: parent.width
                form: root.form
            }

            Text {
                width: parent.width
                text: root.form.error
                textFormat: Text.PlainText
                color: Theme.workspace.attention
                font.pixelSize: Theme.bodyFont
                wrapMode: Text.Wrap
                visible: text.length > 0
                Accessible.role: Accessible.AlertMessage
                Accessible.name: text
            }

            Row {
                anchors.right: parent.right
                spacing: Theme.spacing

                QuietButtonStyle {
                    label: "Cancel"
                    onTriggered: root.form.close()
                }

                PrimaryButtonStyle {
                    label: "Save"
                    onTriggered: root.form.save()
                }
            }
        }
    }
}
