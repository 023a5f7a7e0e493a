import QtQuick
import Kestry
import KestryItems

/// The head of one column, which sorts by it.
Pressable {
    id: root

    required property sessionColumn column
    property bool isAtRight: false

    label: column.label
    implicitWidth: Math.ceil(name.implicitWidth) + Theme.tightSpacing + Theme.sortSymbolSize
    implicitHeight: Theme.tableHeaderHeight
    Accessible.role: Accessible.ColumnHeader
    Accessible.description: column.value + ". " + column.hint

    Rectangle {
        anchors.fill: parent
        anchors.margins: Theme.capsuleInset
        anchors.leftMargin: -Theme.capsulePadding
        anchors.rightMargin: -Theme.capsulePadding
        radius: Theme.menuRowRadius
        color: Theme.workspace.highlight
        visible: root.isHighlighted
    }

    Row {
        id: content
        x: root.isAtRight ? parent.width - width : 0
        height: parent.height
        spacing: Theme.tightSpacing
        // The name is in line with what is below it.
        layoutDirection: root.isAtRight ? Qt.RightToLeft : Qt.LeftToRight

        Text {
            id: name
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(Math.ceil(implicitWidth),
                root.width - Theme.tightSpacing - Theme.sortSymbolSize)
            text: root.column.name
            textFormat: Text.PlainText
            color: root.column.isActive || root.isHighlighted
                ? Theme.workspace.primaryText : Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            font.weight: Font.Medium
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.sortSymbolSize
            height: Theme.sortSymbolSize
            name: root.column.symbol
            color: root.column.isActive ? Theme.workspace.primaryText : Theme.workspace.controlLine
        }
    }
}
