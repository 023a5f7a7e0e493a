import QtQuick
import Kestry
import KestryItems

/// What the rows of saved sessions and of the one in progress have in common: whose it is, where
/// the other columns are, and what the pointer does.
Item {
    id: root

    required property string label
    required property string detail
    required property string clientName
    /// Null without a logo.
    required property var clientLogo
    property bool overviewColumns: false
    property bool showsAvatar: true
    /// The keyboard is on this row, and was used last.
    property bool hasRing: false
    readonly property bool isPointedAt: pressArea.containsMouse
    readonly property real fullDateWidth: Math.max(
        overviewColumns ? Theme.overviewDateColumn : Theme.dateColumn, DateColumn.width(Theme.timerFont))
    readonly property bool showsDate: cells.width - (showsAvatar ? avatarSize + Theme.rowAvatarGap : 0)
        - fullDateWidth - durationWidth - valueWidth - 3 * Theme.columnGap >= Theme.leastNameWidth
    /// With the gap after it; a table that is too narrow has no dates.
    readonly property real dateWidth: showsDate ? fullDateWidth : -Theme.columnGap
    readonly property real durationWidth: overviewColumns ? Theme.overviewDurationColumn : Theme.durationColumn
    readonly property real valueWidth: overviewColumns ? Theme.overviewValueColumn : Theme.valueColumn
    readonly property real avatarSize: overviewColumns ? Theme.overviewAvatar : Theme.rowAvatar
    default property alias columns: cells.data

    signal triggered
    /// The menu of the row is wanted beside an item.
    signal menuRequested(Item item)

    implicitHeight: Theme.rowHeight

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.workspace.highlight
        opacity: root.isPointedAt ? Theme.pointedOpacity : 0

        Behavior on opacity {
            enabled: !Theme.reducesMotion
            NumberAnimation { duration: Theme.entranceDuration }
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: "transparent"
        border.width: Theme.ringWidth
        border.color: Theme.workspace.accent
        visible: root.hasRing
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.LeftButton) {
                root.triggered();
            }
        }
        onPressed: mouse => {
            if (mouse.button === Qt.RightButton) {
                pointer.x = mouse.x;
                pointer.y = mouse.y;
                root.menuRequested(pointer);
            }
        }

        Item { id: pointer; width: 1; height: 1 }
    }

    Item {
        id: cells
        anchors.fill: parent
        anchors.leftMargin: Theme.rowPadding
        anchors.rightMargin: Theme.rowPadding

        ClientAvatar {
            id: avatar
            anchors.verticalCenter: parent.verticalCenter
            size: root.avatarSize
            name: root.clientName
            logo: root.clientLogo
            visible: root.showsAvatar
        }

        Column {
            anchors.left: parent.left
            anchors.leftMargin: root.showsAvatar ? root.avatarSize + Theme.rowAvatarGap : 0
            anchors.right: parent.right
            anchors.rightMargin: root.dateWidth + root.durationWidth + root.valueWidth + 3 * Theme.columnGap
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.rowTextSpacing

            Text {
                width: parent.width
                text: root.label
                textFormat: Text.PlainText
                color: Theme.workspace.primaryText
                font.pixelSize: Theme.rowFont
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                maximumLineCount: 1
                Accessible.ignored: true
            }

            Text {
                width: parent.width
                text: root.detail
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: root.overviewColumns ? Theme.bodyFont : Theme.timerFont
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                maximumLineCount: 1
                Accessible.ignored: true
            }
        }
    }
}
