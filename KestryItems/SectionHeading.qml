import QtQuick
import KestryItems

/// The heading of a part of a page, and what can be done there at its right.
Item {
    id: root

    required property string title
    default property alias button: place.data

    implicitHeight: Math.max(heading.implicitHeight, place.height)

    Text {
        id: heading
        anchors.left: parent.left
        anchors.right: place.left
        anchors.rightMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.sectionFont
        font.weight: Font.Medium
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Item {
        id: place
        anchors.right: parent.right
        width: childrenRect.width
        height: childrenRect.height
    }
}
