import QtQuick
import Kestry
import KestryItems

/// The heads of the columns, in line with the rows below. Without a column of dates their head
/// stands beside that of the durations.
Item {
    id: root

    required property SessionsBridge sessions
    required property TableColumns table

    implicitHeight: Theme.tableHeaderHeight
    Accessible.role: Accessible.Row
    Accessible.name: "Columns"

    SortHeader {
        anchors.left: parent.left
        anchors.leftMargin: root.table.mark
        anchors.right: date.left
        anchors.rightMargin: Theme.columnGap
        column: root.sessions.titleColumn
        onTriggered: root.sessions.sortBy(column.field)
    }

    SortHeader {
        id: date
        anchors.right: duration.left
        anchors.rightMargin: Theme.columnGap
        width: root.table.hasDateColumn ? root.table.date : implicitWidth
        isAtRight: !root.table.hasDateColumn
        column: root.sessions.dateColumn
        onTriggered: root.sessions.sortBy(column.field)
    }

    SortHeader {
        id: duration
        anchors.right: value.left
        anchors.rightMargin: Theme.columnGap
        width: root.table.hasDateColumn ? root.table.duration : implicitWidth
        isAtRight: true
        column: root.sessions.durationColumn
        onTriggered: root.sessions.sortBy(column.field)
    }

    SortHeader {
        id: value
        anchors.right: parent.right
        width: root.table.value
        isAtRight: true
        column: root.sessions.valueColumn
        onTriggered: root.sessions.sortBy(column.field)
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        color: Theme.workspace.outline
    }
}
