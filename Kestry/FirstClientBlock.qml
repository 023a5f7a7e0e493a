import QtQuick
import KestryItems

/// What a page of figures says before there is a client.
Column {
    id: root

    signal addAsked

    topPadding: Theme.firstClientPadding
    bottomPadding: Theme.firstClientPadding
    spacing: Theme.spacing

    Text {
        width: parent.width
        text: "Add your first client"
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.sectionFont
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Text {
        width: parent.width
        bottomPadding: Theme.sectionSpacing - Theme.spacing
        text: "Create a client and project to start tracking time."
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    PrimaryButtonStyle {
        label: "Add client"
        onTriggered: root.addAsked()
    }
}
