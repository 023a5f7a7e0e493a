import QtQuick
import KestryItems

/// The page of a destination.
Item {
    id: root

    required property string destination

    Text {
        x: Theme.pageMargin
        y: Theme.pageMargin
        text: root.destination
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.pageTitleFont
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
