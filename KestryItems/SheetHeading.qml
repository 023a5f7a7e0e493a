import QtQuick
import KestryItems

/// What a form is about, with its close button.
Item {
    id: root

    required property string title
    required property string line

    signal closed

    implicitHeight: words.implicitHeight

    Column {
        id: words
        width: parent.width - closeButton.width - Theme.spacing
        spacing: Theme.tightSpacing

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
            text: root.line
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    IconButton {
        id: closeButton
        anchors.right: parent.right
        anchors.rightMargin: -Theme.spacing
        y: -Theme.spacing
        symbol: "xmark"
        label: "Close"
        onTriggered: root.closed()
    }
}
