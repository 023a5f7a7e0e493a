import QtQuick
import Kestry
import KestryItems

/// What has become of an update, and what can be done with it now.
FocusScope {
    id: root

    required property SoftwareUpdateBridge updates

    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: root.updates.title
    Accessible.description: root.updates.message
    Keys.onEscapePressed: root.updates.dismiss()
    // What loses nothing has the keyboard, also after each step.
    Component.onCompleted: leaving.forceActiveFocus()

    Connections {
        target: root.updates
        function onSheetChanged(): void {
            if (root.updates.installLabel.length === 0 && (going.activeFocus || notes.activeFocus)) {
                leaving.forceActiveFocus();
            }
        }
    }

    SheetShade {
        anchors.fill: parent
    }

    SheetFrame {
        id: frame
        anchors.centerIn: parent
        width: Math.min(Theme.alertWidth, root.width - 2 * Theme.pageMargin)
        contentHeight: Math.min(column.implicitHeight, root.height - 2 * Theme.sheetMargin - 2 * Theme.sheetPadding)

        ScrollingPage {
            width: frame.contentWidth
            height: frame.contentHeight
            contentHeight: column.implicitHeight

            Column {
                id: column
                width: frame.contentWidth
                spacing: Theme.spacing + Theme.tightSpacing

                Text {
                    width: parent.width
                    text: root.updates.title
                    textFormat: Text.PlainText
                    color: Theme.workspace.primaryText
                    font.pixelSize: Theme.sheetTitleFont
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }

                Text {
                    width: parent.width
                    text: root.updates.message
                    textFormat: Text.PlainText
                    color: Theme.workspace.secondaryText
                    font.pixelSize: Theme.bodyFont
                    lineHeight: 1.25
                    wrapMode: Text.Wrap
                    visible: text.length > 0
                    Accessible.ignored: true // the dialog's description
                }

                TextLink {
                    id: notes
                    label: "Release notes"
                    visible: root.updates.hasReleaseNotes
                    onTriggered: root.updates.openReleaseNotes()
                }

                ProgressLine {
                    width: parent.width
                    label: root.updates.title
                    progress: Math.max(0, root.updates.progress)
                    visible: root.updates.progress >= 0
                }

                Item {
                    width: parent.width
                    height: Theme.spacing
                }

                Row {
                    anchors.right: parent.right
                    spacing: Theme.boxSpacing

                    QuietButtonStyle {
                        id: leaving
                        label: root.updates.dismissLabel
                        enabled: root.updates.canDismiss
                        onTriggered: root.updates.dismiss()
                    }

                    PrimaryButtonStyle {
                        id: going
                        label: root.updates.installLabel
                        visible: root.updates.installLabel.length > 0
                        onTriggered: root.updates.install()
                    }
                }
            }
        }
    }

    LiveMessage {
        message: root.updates.title
    }
}
