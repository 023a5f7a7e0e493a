import QtQuick
import Kestry
import KestryItems

/// The names of the columns of recent sessions, in line with the rows below.
Item {
    id: root

    readonly property real markWidth: Theme.overviewAvatar + Theme.rowAvatarGap
    readonly property real dateWidth: Math.max(Theme.overviewDateColumn, DateColumn.width(Theme.timerFont))
    readonly property bool showsDate: width - markWidth - dateWidth
        - Theme.overviewDurationColumn - Theme.overviewValueColumn - 3 * Theme.columnGap >= Theme.leastNameWidth

    implicitHeight: Theme.tableHeaderHeight
    Accessible.role: Accessible.Row
    Accessible.name: "Columns"

    component Name: Text {
        anchors.verticalCenter: parent?.verticalCenter
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.bodyFont
        elide: Text.ElideRight
        Accessible.role: Accessible.ColumnHeader
        Accessible.name: text
    }

    Name {
        anchors.left: parent.left
        anchors.right: root.showsDate ? date.left : length.left
        anchors.rightMargin: Theme.columnGap
        text: "Project / session"
        horizontalAlignment: Text.AlignLeft
    }

    Name {
        id: date
        anchors.right: length.left
        anchors.rightMargin: Theme.columnGap
        width: root.dateWidth
        text: "Date"
        horizontalAlignment: Text.AlignLeft
        visible: root.showsDate
    }

    Name {
        id: length
        anchors.right: worth.left
        anchors.rightMargin: Theme.columnGap
        width: Theme.overviewDurationColumn
        text: "Duration"
        horizontalAlignment: Text.AlignRight
    }

    Name {
        id: worth
        anchors.right: parent.right
        width: Theme.overviewValueColumn
        text: "Value"
        horizontalAlignment: Text.AlignRight
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        color: Theme.workspace.outline
    }
}
