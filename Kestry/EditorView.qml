import QtQuick
import Kestry
import KestryItems

/// A form over the window: its heading, the fields, why it was refused, and what it can do.
FocusScope {
    id: root

    required property EditorForm form
    readonly property bool isAsking: root.form.question !== EditorForm.NoQuestion
    readonly property var saveKeys: WindowKeys.sequences(WindowKeys.SaveForm)

    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: root.form.title
    Keys.onEscapePressed: root.form.requestClose()
    onIsAskingChanged: {
        if (!root.isAsking) {
            Qt.callLater(content.forceActiveFocus); // where it was before
        }
    }

    Shortcut {
        sequences: root.saveKeys
        enabled: root.visible && root.enabled && !root.isAsking
        onActivated: root.form.save()
    }

    SheetShade {
        anchors.fill: parent
    }

    FocusScope {
        id: content
        anchors.fill: parent
        enabled: !root.isAsking
        focus: true

        SheetFrame {
            id: frame
            anchors.centerIn: parent
            width: Math.min(Theme.sheetWidth, content.width - 2 * Theme.pageMargin)
            contentHeight: heading.implicitHeight + body.height + end.implicitHeight
                + 2 * Theme.fieldSpacing

            SheetHeading {
                id: heading
                width: parent.width
                title: root.form.title
                line: root.form.line
                onClosed: root.form.requestClose()
            }

            EditorBody {
                id: body
                anchors.top: heading.bottom
                anchors.topMargin: Theme.fieldSpacing
                width: parent.width + margin
                margin: Theme.sheetPadding / 2
                height: Math.min(contentHeight, root.height - 2 * Theme.sheetMargin
                    - 2 * Theme.sheetPadding - heading.implicitHeight - end.implicitHeight
                    - 2 * Theme.fieldSpacing)
                form: root.form
            }

            Column {
                id: end
                anchors.bottom: parent.bottom
                width: parent.width
                spacing: Theme.fieldSpacing

                FormMessage {
                    width: parent.width
                    message: root.form.error
                }

                Item {
                    width: parent.width
                    height: Theme.buttonHeight

                    DestructiveButton {
                        label: "Delete session"
                        visible: root.form.canDelete
                        onTriggered: root.form.requestDelete()
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
    }

    EditorQuestion {
        anchors.fill: parent
        form: root.form
    }
}
