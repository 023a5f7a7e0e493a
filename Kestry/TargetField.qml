import QtQuick
import Kestry
import KestryItems

/// What the next session is for, in two lines, and the way to its choice.
Pressable {
    id: root

    required property SidebarSession box

    /// The choice is wanted below the item.
    signal asked(item: Item)

    label: box.targetLabel
    tip: client.truncated || detail.truncated || rate.truncated
        ? box.targetClient + "\n" + box.targetDetail : ""
    tipColors: Theme.workspace
    implicitHeight: Math.ceil(lines.implicitHeight) + 2 * Theme.spacing
    Accessible.role: Accessible.ButtonMenu
    Keys.onDownPressed: root.asked(root)
    onTriggered: root.asked(root)

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.field
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.highlight
        visible: root.isHighlighted
    }

    Column {
        id: lines
        anchors.left: parent.left
        anchors.leftMargin: Theme.controlPadding
        anchors.right: chevron.left
        anchors.rightMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter

        Text {
            id: client
            width: parent.width
            text: root.box.targetClient
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            font.weight: Font.Medium
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            Accessible.ignored: true
        }

        // Project and rate are beside each other, or below each other where that is too narrow.
        Text {
            id: detail
            readonly property bool isWhole: whole.advanceWidth <= width
                || root.box.targetProject.length === 0

            width: parent.width
            text: isWhole ? whole.text : root.box.targetProject
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.smallFont
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            visible: whole.text.length > 0
            Accessible.ignored: true
        }

        Text {
            id: rate
            width: parent.width
            text: root.box.targetRate
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.smallFont
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            visible: !detail.isWhole
            Accessible.ignored: true
        }
    }

    TextMetrics {
        id: whole
        font: rate.font
        text: root.box.targetDetail
    }

    Symbol {
        id: chevron
        anchors.right: parent.right
        anchors.rightMargin: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.smallSymbolSize
        height: Theme.smallSymbolSize
        name: "chevron.down"
        color: Theme.workspace.secondaryText
    }
}
