import QtQuick
import KestryItems

/// One page or client of the sidebar.
Pressable {
    id: root

    required property bool isCurrent
    property string symbol: ""
    /// What stands in place of a symbol, in a square of this size.
    default property alias mark: place.data
    readonly property real markSize: Theme.sidebarMarkSize

    tip: name.truncated ? label : ""
    tipColors: Theme.workspace
    ringDistance: 0
    implicitHeight: Theme.sidebarRowHeight
    Accessible.role: Accessible.PageTab
    Accessible.selected: root.isCurrent

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.highlight
        opacity: root.isCurrent ? 1 : Theme.pointedOpacity
        visible: root.isCurrent || root.isHighlighted
    }

    Item {
        id: place
        x: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: root.markSize
        height: root.markSize

        Symbol {
            anchors.centerIn: parent
            width: Theme.sidebarSymbolSize
            height: Theme.sidebarSymbolSize
            name: root.symbol
            color: root.isCurrent ? Theme.workspace.accent : Theme.workspace.secondaryText
            visible: root.symbol.length > 0
        }
    }

    Text {
        id: name
        anchors.left: place.right
        anchors.leftMargin: Theme.spacing
        anchors.right: parent.right
        anchors.rightMargin: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        text: root.label
        textFormat: Text.PlainText
        color: root.isCurrent ? Theme.workspace.primaryText : Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        font.weight: root.isCurrent ? Font.Medium : Font.Normal
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        maximumLineCount: 1
        Accessible.ignored: true
    }
}
