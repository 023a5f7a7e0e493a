import QtQuick
import KestryItems

/// A question over the window before something is lost. What loses nothing has the keyboard first.
FocusScope {
    id: root

    required property string title
    required property string message
    required property string action
    required property string cancel

    signal confirmed
    signal cancelled

    focus: visible
    Accessible.role: Accessible.Dialog
    Accessible.name: root.title
    Accessible.description: root.message
    Keys.onEscapePressed: root.cancelled()

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
                Accessible.role: Accessible.Heading
                Accessible.name: text
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
                visible: text.length > 0
                Accessible.ignored: true // the dialog's description
            }

            Row {
                anchors.right: parent.right
                spacing: Theme.spacing

                DestructiveButton {
                    id: confirm
                    label: root.action
                    KeyNavigation.right: cancelling
                    onTriggered: root.confirmed()
                }

                QuietButtonStyle {
                    id: cancelling
                    label: root.cancel
                    focus: true
                    KeyNavigation.left: confirm
                    onTriggered: root.cancelled()
                }
            }
        }
    }
}
