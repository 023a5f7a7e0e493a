import QtQuick
import Kestry
import KestryItems

/// Asks before a session is deleted. The keyboard begins at the way out.
FocusScope {
    id: root

    required property SessionsBridge sessions
    readonly property string title: "Delete this session?"
    readonly property string message: "This removes the session and its earnings from your totals. This cannot be undone."

    visible: root.sessions.isAskingToDelete
    focus: visible
    onVisibleChanged: if (visible) cancel.forceActiveFocus()
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.title + " " + root.message
    Keys.onEscapePressed: root.sessions.cancelDelete()

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

            Text {
                width: parent.width
                bottomPadding: Theme.spacing
                text: root.message
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.bodyFont
                lineHeight: 1.25
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            Row {
                anchors.right: parent.right
                spacing: Theme.spacing

                QuietButtonStyle {
                    id: cancel
                    label: "Cancel"
                    focus: true
                    KeyNavigation.right: confirm
                    onTriggered: root.sessions.cancelDelete()
                }

                PrimaryButtonStyle {
                    id: confirm
                    label: "Delete session"
                    fill: Theme.workspace.attention
                    textColor: Theme.workspace.raisedSurface
                    KeyNavigation.left: cancel
                    onTriggered: root.sessions.confirmDelete()
                }
            }
        }
    }
}
