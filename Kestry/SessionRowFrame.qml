import QtQuick
import Kestry
import KestryItems

/// What the rows of saved sessions and of the one in progress have in common: whose it is, and what
/// the pointer does.
Item {
    id: root

    required property string label
    required property string detail
    required property string clientName
    /// Null without a logo.
    required property var clientLogo
    required property TableColumns table
    /// The keyboard is on this row, and was used last.
    property bool hasRing: false
    readonly property bool isPointedAt: pressArea.containsMouse
    /// The middles of the lines that a column is in line with: of its one, or of its two.
    readonly property real onlyLine: height / 2
    readonly property real firstLine: names.y + title.y + title.height / 2
    readonly property real secondLine: names.y + about.y + about.height / 2
    /// Of the duration and the value, which have the date below them where it has no column.
    readonly property real figureLine: table.hasDateColumn ? onlyLine : firstLine
    readonly property real dateLine: table.hasDateColumn ? onlyLine : secondLine
    default property alias columns: cells.data

    signal triggered
    /// The menu of the row is wanted beside an item.
    signal menuRequested(Item item)

    implicitHeight: Theme.rowHeight

    Rectangle {
        objectName: "highlight"
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
            size: root.table.avatar
            name: root.clientName
            logo: root.clientLogo
            visible: root.table.showsAvatar
        }

        Column {
            id: names
            anchors.left: parent.left
            anchors.leftMargin: root.table.mark
            anchors.right: parent.right
            anchors.rightMargin: root.table.afterNames
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.rowTextSpacing

            Text {
                id: title
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
                id: about
                width: parent.width
                text: root.detail
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: root.table.isOverview ? Theme.bodyFont : Theme.timerFont
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                maximumLineCount: 1
                Accessible.ignored: true
            }
        }
    }
}
