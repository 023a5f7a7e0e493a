import QtQuick
import KestryItems

/// Settings that belong together, under their heading.
Column {
    id: root

    required property string title
    default property alias content: rows.data

    spacing: Theme.controlRadius

    Text {
        width: parent.width
        text: root.title
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.rowFont
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Rectangle {
        width: parent.width
        height: rows.height
        radius: Theme.boxRadius
        color: Theme.workspace.raisedSurface
        border.color: Theme.workspace.outline

        Column {
            id: rows
            width: parent.width
        }
    }
}
