import QtQuick
import KestryItems

/// One page or client of the sidebar.
Item {
    id: root

    required property string label
    required property bool isCurrent
    property string symbol
    /// Of a client; none beside a symbol.
    property color dotColor: "transparent"

    signal triggered

    implicitHeight: Theme.sidebarRowHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTab
    Accessible.name: root.label
    Accessible.selected: root.isCurrent
    Accessible.onPressAction: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onSpacePressed: root.triggered()

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.highlight
        opacity: root.isCurrent ? 1 : Theme.pointedOpacity
        visible: root.isCurrent || pressArea.containsMouse || root.activeFocus
    }

    Symbol {
        id: glyph
        x: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.sidebarSymbolSize
        height: Theme.sidebarSymbolSize
        name: root.symbol
        color: root.isCurrent ? Theme.workspace.accent : Theme.workspace.secondaryText
        visible: root.symbol.length > 0
    }

    Rectangle {
        anchors.centerIn: glyph
        width: Theme.dotSize
        height: Theme.dotSize
        radius: Theme.dotSize / 2
        color: root.dotColor
        visible: !glyph.visible
    }

    Text {
        anchors.left: glyph.right
        anchors.leftMargin: Theme.controlPadding
        anchors.right: parent.right
        anchors.rightMargin: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        text: root.label
        textFormat: Text.PlainText
        color: root.isCurrent ? Theme.workspace.primaryText : Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        font.weight: root.isCurrent ? Font.Medium : Font.Normal
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
