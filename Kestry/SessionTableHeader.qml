import QtQuick
import Kestry
import KestryItems

/// The heads of the columns, in line with the rows below.
Item {
    id: root

    required property SessionsBridge sessions
    property bool showsAvatar: true

    readonly property real markWidth: root.showsAvatar ? Theme.rowAvatar + Theme.rowAvatarGap : 0
    readonly property real dateWidth: Math.max(Theme.dateColumn, DateColumn.width(Theme.timerFont))
    readonly property bool showsDate: width - markWidth - dateWidth - Theme.durationColumn
        - Theme.valueColumn - 3 * Theme.columnGap >= Theme.leastNameWidth

    implicitHeight: Theme.tableHeaderHeight
    Accessible.role: Accessible.Row
    Accessible.name: "Columns"

    SortHeader {
        anchors.left: parent.left
        anchors.leftMargin: root.markWidth
        anchors.right: root.showsDate ? date.left : duration.left
        anchors.rightMargin: Theme.columnGap
        column: root.sessions.titleColumn
        onTriggered: root.sessions.sortBy(column.field)
    }

    SortHeader {
        id: date
        visible: root.showsDate
        anchors.right: duration.left
        anchors.rightMargin: Theme.columnGap
        width: root.dateWidth
        column: root.sessions.dateColumn
        onTriggered: root.sessions.sortBy(column.field)
    }

    SortHeader {
        id: duration
        anchors.right: value.left
        anchors.rightMargin: Theme.columnGap
        width: Theme.durationColumn
        isAtRight: true
        column: root.sessions.durationColumn
        onTriggered: root.sessions.sortBy(column.field)
    }

    SortHeader {
        id: value
        anchors.right: parent.right
        width: Theme.valueColumn
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
