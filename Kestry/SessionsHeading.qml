import QtQuick
import Kestry
import KestryItems

/// What the list is of.
Column {
    id: root

    required property SessionsBridge sessions

    spacing: Theme.tightSpacing

    Text {
        width: parent.width
        text: root.sessions.title
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: root.sessions.isEmbedded ? Theme.sectionFont : Theme.pageTitleFont
        font.weight: root.sessions.isEmbedded ? Font.Medium : Font.DemiBold
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        maximumLineCount: 1
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Text {
        width: parent.width
        text: "Review and edit your recorded time"
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        elide: Text.ElideRight
        visible: !root.sessions.isEmbedded
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
