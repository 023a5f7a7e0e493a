import QtQuick
import KestryItems

/// A message over the window that waits until it has been read.
FocusScope {
    id: root

    required property string title
    required property string message

    signal dismissed

    focus: visible
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.title + ". " + root.message
    Keys.onEscapePressed: root.dismissed()

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

            PrimaryButtonStyle {
                anchors.right: parent.right
                label: "OK"
                focus: true
                onTriggered: root.dismissed()
            }
        }
    }
}
