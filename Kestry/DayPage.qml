pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// A calendar page. The arrow keys, Page Up and Page Down move in it, Return chooses.
Column {
    id: root

    required property DayPicker days
    readonly property alias grid: grid
    readonly property real cellWidth: Math.floor(width / 7)

    spacing: Theme.tightSpacing

    Item {
        width: parent.width
        height: Theme.buttonHeight

        IconButton {
            symbol: "chevron.left"
            label: "Previous month"
            activeFocusOnTab: false // the keyboard has Page Up
            onTriggered: root.days.turn(-1)
        }

        Text {
            anchors.centerIn: parent
            text: root.days.month
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            font.weight: Font.Medium
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        IconButton {
            anchors.right: parent.right
            symbol: "chevron.right"
            label: "Next month"
            activeFocusOnTab: false
            onTriggered: root.days.turn(1)
        }
    }

    Row {
        Repeater {
            model: root.days.weekdays

            Text {
                required property string modelData

                width: root.cellWidth
                text: modelData
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.smallFont
                horizontalAlignment: Text.AlignHCenter
                Accessible.ignored: true
            }
        }
    }

    Grid {
        id: grid
        columns: 7
        activeFocusOnTab: true
        Accessible.role: Accessible.Table
        Accessible.name: root.days.currentName
        Accessible.description: "Arrow keys choose a day, Page Up and Page Down a month."
        Keys.onPressed: event => event.accepted = root.days.press(event.key, event.modifiers)

        Repeater {
            model: root.days

            DayCell {
                required property int index

                width: root.cellWidth
                isCurrent: grid.activeFocus && index === root.days.current
                onTriggered: root.days.choose(index)
            }
        }
    }
}
