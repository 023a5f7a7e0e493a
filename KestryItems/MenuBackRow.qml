import QtQuick
import KestryItems

/// The way back from a submenu, above its entries.
Item {
    id: root

    required property string label
    required property ThemeColors colors
    required property font rowFont

    signal triggered

    Accessible.role: Accessible.MenuItem
    Accessible.name: root.label
    Accessible.description: "Back"
    Accessible.ignored: !root.visible
    Accessible.onPressAction: root.triggered()

    Item {
        width: parent.width
        height: Theme.menuRowHeight

        Rectangle {
            anchors.fill: parent
            radius: Theme.menuRowRadius
            color: root.colors.highlight
            visible: pressArea.containsMouse
        }

        Symbol {
            id: chevron
            x: Theme.menuRowPadding
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.smallSymbolSize
            height: Theme.smallSymbolSize
            name: "chevron.down"
            rotation: 90
            color: root.colors.secondaryText
        }

        Text {
            anchors.left: chevron.right
            anchors.leftMargin: Theme.spacing
            anchors.right: parent.right
            anchors.rightMargin: Theme.menuRowPadding
            anchors.verticalCenter: parent.verticalCenter
            text: root.label
            textFormat: Text.PlainText
            font.pixelSize: root.rowFont.pixelSize
            font.weight: Font.Medium
            color: root.colors.secondaryText
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        MouseArea {
            id: pressArea
            anchors.fill: parent
            hoverEnabled: true
            onClicked: root.triggered()
        }
    }

    Rectangle {
        x: Theme.menuRowPadding
        y: Theme.menuRowHeight + (Theme.menuSeparatorHeight - height) / 2
        width: parent.width - 2 * x
        height: 1
        color: root.colors.tipOutline
    }
}
