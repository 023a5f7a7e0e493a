import QtQuick
import KestryItems

/// One entry of a menu: a command, a line between groups, or the heading of a group.
Item {
    id: root

    required property MenuController menu
    required property ThemeColors colors
    required property font rowFont
    required property int index
    required property int kind
    required property string text
    required property string symbol
    required property string color
    required property string shortcut
    required property bool isEnabled
    required property bool isCheckable
    required property bool isChecked
    required property bool hasSubmenu
    readonly property bool isCommand: kind === MenuController.Command
    readonly property bool isHighlighted: menu.current === index
    readonly property color textColor: isHighlighted ? colors.accentText
        : isCommand && isEnabled ? colors.primaryText : colors.secondaryText
    readonly property color faintColor: isHighlighted ? colors.accentText : colors.secondaryText

    /// The pointer is at this place of the desktop, on the row.
    signal pointerSeen(place: point)

    implicitHeight: kind === MenuController.Separator ? Theme.menuSeparatorHeight : Theme.menuRowHeight
    Accessible.role: isCommand ? Accessible.MenuItem
        : kind === MenuController.Separator ? Accessible.Separator : Accessible.StaticText
    Accessible.name: root.text
    // The toolkit does not tell that an entry is disabled.
    Accessible.description: isEnabled ? root.shortcut : "Not available"
    Accessible.checkable: root.isCheckable
    Accessible.checked: root.isChecked
    Accessible.focusable: isCommand && isEnabled
    // Without it the focus shows only while the platform takes the menu's window for the active one.
    Accessible.focused: root.isHighlighted
    Accessible.onPressAction: root.menu.choose(root.index)

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.menuRowPadding
        anchors.rightMargin: Theme.menuRowPadding
        anchors.verticalCenter: parent.verticalCenter
        height: 1
        color: root.colors.tipOutline
        visible: root.kind === MenuController.Separator
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.menuRowRadius
        color: root.colors.accent
        visible: root.isHighlighted
    }

    Symbol {
        id: mark
        x: Theme.menuRowPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.symbolSize
        height: Theme.symbolSize
        name: "checkmark"
        color: root.textColor
        visible: root.isChecked
    }

    Item {
        id: sign
        x: Theme.menuRowPadding + (root.menu.hasMarks ? Theme.menuMarkWidth : 0)
        width: root.menu.hasSymbols ? Theme.menuSymbolWidth : 0
        height: parent.height
        visible: root.isCommand

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.symbolSize
            height: Theme.symbolSize
            name: root.symbol
            color: root.textColor
            opacity: root.isEnabled ? 1 : Theme.quietDisabledOpacity
            visible: root.symbol.length > 0
        }

        Rectangle {
            x: (Theme.symbolSize - width) / 2
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.dotSize
            height: Theme.dotSize
            radius: Theme.dotSize / 2
            color: root.color.length > 0 ? root.color : "transparent"
            border.width: root.isHighlighted ? 1 : 0
            border.color: root.colors.accentText
            visible: root.color.length > 0
        }
    }

    Text {
        anchors.left: sign.right
        anchors.right: hint.left
        anchors.rightMargin: hint.width > 0 ? Theme.menuShortcutGap : 0
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        textFormat: Text.PlainText
        font: root.rowFont
        color: root.textColor
        opacity: root.isEnabled ? 1 : Theme.menuDisabledOpacity
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }

    Item {
        id: hint
        anchors.right: parent.right
        anchors.rightMargin: Theme.menuRowPadding
        width: root.hasSubmenu ? Theme.smallSymbolSize : keys.implicitWidth
        height: parent.height

        Text {
            id: keys
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.shortcut
            textFormat: Text.PlainText
            font: root.rowFont
            color: root.faintColor
            Accessible.ignored: true
        }

        Symbol {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.smallSymbolSize
            height: Theme.smallSymbolSize
            name: "chevron.down"
            rotation: -90
            color: root.faintColor
            visible: root.hasSubmenu
        }
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onEntered: root.pointerSeen(root.mapToGlobal(mouseX, mouseY))
        onPositionChanged: root.pointerSeen(root.mapToGlobal(mouseX, mouseY))
        onClicked: root.menu.choose(root.index)
    }
}
