import QtQuick
import Kestry
import KestryItems

/// Asks where to write the sessions, on a desktop without a dialog of its own for files.
FocusScope {
    id: root

    required property SessionExport exporter

    visible: root.exporter.isAsking
    focus: visible
    onVisibleChanged: if (visible) field.beginEditing()
    Accessible.role: Accessible.Dialog
    Accessible.name: heading.title
    Keys.onEscapePressed: root.exporter.cancel()

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
                title: "Export saved sessions"
                line: "Comma-separated text, for a spreadsheet."
                onClosed: root.exporter.cancel()
            }

            FormTextField {
                id: field
                width: parent.width
                label: "File"
                text: root.exporter.path
                onEdited: text => root.exporter.path = text
                onSubmitted: root.exporter.save()
            }

            Text {
                width: parent.width
                text: root.exporter.note
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
                    onTriggered: root.exporter.cancel()
                }

                PrimaryButtonStyle {
                    label: root.exporter.saveLabel
                    onTriggered: root.exporter.save()
                }
            }
        }
    }
}
