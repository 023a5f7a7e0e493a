pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// The entries of the menu that is open. It is as large as they need; given less height, it
/// scrolls.
Item {
    id: root

    required property MenuController menu
    required property real radius
    readonly property ThemeColors colors: menu.look === MenuController.Panel ? Theme.dark : Theme.workspace
    readonly property font rowFont: sample.font
    readonly property int backHeight: menu.isSubmenu ? Theme.menuRowHeight + Theme.menuSeparatorHeight : 0
    readonly property int rowsHeight: list.count * Theme.menuRowHeight
        - menu.separatorCount * (Theme.menuRowHeight - Theme.menuSeparatorHeight)
    property point lastPointer: Qt.point(-1, -1)
    property real textWidth: 0
    property real shortcutWidth: 0

    function measure(): void {
        root.textWidth = Math.min(Theme.menuTextMaximum, Math.ceil(root.menu.widestText(root.rowFont)) + 1);
        root.shortcutWidth = Math.ceil(root.menu.widestShortcut(root.rowFont));
    }

    /// Gives the highlighted entry the focus, which is what a screen reader follows.
    function follow(): void {
        list.currentIndex = root.menu.current;
        if (list.currentItem) {
            list.currentItem.forceActiveFocus();
        } else {
            root.forceActiveFocus();
        }
    }

    /// Highlights the row under the pointer, but not when the rows move below one that rests.
    function point(row: int, place: point): void {
        if (place !== root.lastPointer) {
            root.lastPointer = place;
            root.menu.point(row);
        }
    }

    implicitWidth: Math.max(Theme.menuMinimumWidth, 2 * Theme.menuPadding + 2 * Theme.menuRowPadding
        + Theme.menuMarkWidth + (menu.hasSymbols ? Theme.menuSymbolWidth : 0) + textWidth
        + (shortcutWidth > 0 ? Theme.menuShortcutGap + shortcutWidth : 0))
    implicitHeight: 2 * Theme.menuPadding + backHeight + rowsHeight
    Accessible.role: Accessible.PopupMenu
    Accessible.name: root.menu.name
    Component.onCompleted: {
        root.measure();
        root.follow();
    }

    Connections {
        target: root.menu
        function onShown(): void {
            root.measure();
        }
        function onCurrentChanged(): void {
            root.follow();
        }
    }

    Text {
        id: sample
        font.pixelSize: Theme.menuFont
        textFormat: Text.PlainText
        visible: false
        Accessible.ignored: true
    }

    RoundedShape {
        anchors.fill: parent
        radius: root.radius
        color: root.colors.raisedSurface
        outline: root.colors.tipOutline
    }

    MenuBackRow {
        x: Theme.menuPadding
        y: Theme.menuPadding
        width: list.width
        height: root.backHeight
        visible: root.menu.isSubmenu
        label: root.menu.name
        colors: root.colors
        rowFont: root.rowFont
        onTriggered: root.menu.leaveSubmenu()
    }

    ListView {
        id: list
        anchors.fill: parent
        anchors.margins: Theme.menuPadding
        anchors.topMargin: Theme.menuPadding + root.backHeight
        model: root.menu
        currentIndex: -1
        clip: true
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightMoveDuration: 0
        cacheBuffer: 0
        delegate: MenuRow {
            id: row
            width: list.width
            menu: root.menu
            colors: root.colors
            rowFont: root.rowFont
            onPointerSeen: place => root.point(row.index, place)
        }
    }

    ScrollMark {
        anchors.rightMargin: Theme.scrollMarkWidth / 2
        y: list.y
        view: list
        color: root.colors.controlLine
    }
}
