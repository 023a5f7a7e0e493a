import QtQuick
import Kestry
import KestryItems

/// The names of the columns of recent sessions, in line with the rows below.
Item {
    id: root

    required property TableColumns table

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
        anchors.right: root.table.hasDateColumn ? date.left : length.left
        anchors.rightMargin: Theme.columnGap
        text: "Project / session"
        horizontalAlignment: Text.AlignLeft
    }

    Name {
        id: date
        anchors.right: length.left
        anchors.rightMargin: Theme.columnGap
        width: root.table.date
        text: "Date"
        horizontalAlignment: Text.AlignLeft
        visible: root.table.hasDateColumn
    }

    Name {
        id: length
        anchors.right: worth.left
        anchors.rightMargin: Theme.columnGap
        width: root.table.hasDateColumn ? root.table.duration : implicitWidth
        text: "Duration"
        horizontalAlignment: Text.AlignRight
    }

    Name {
        id: worth
        anchors.right: parent.right
        width: root.table.value
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
