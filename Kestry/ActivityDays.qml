pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// The bars of the activity chart. They rise by one clock, and share the tip and the ring of the
/// day that is pointed at or has the keyboard, which walks from day to day.
FocusScope {
    id: root

    required property ActivityBars bars
    readonly property int count: Math.max(1, days.count)
    readonly property alias spacing: row.spacing
    property int currentRow: 0
    /// The day that has the keyboard; null without it.
    property ActivityBar focused: null
    /// Milliseconds since the bars appeared.
    property real clock: 0
    readonly property real end: Theme.riseDuration + days.count * Theme.barDelay
    readonly property real time: Theme.reducesMotion ? end : clock

    function go(row: int): void {
        root.currentRow = Math.max(0, Math.min(row, days.count - 1));
        days.itemAt(root.currentRow)?.forceActiveFocus(Qt.TabFocusReason);
    }

    function begin(): void {
        root.currentRow = Math.max(0, root.bars.firstRow());
        if (root.activeFocus) {
            root.go(root.currentRow);
        }
        rise.stop();
        root.clock = root.time;
        if (!Theme.reducesMotion) {
            rise.start();
        }
    }

    /// How much of a bar has risen, as a critically damped spring does: one after the other.
    function risen(row: int): real {
        const since = root.time - Math.max(0, row) * Theme.barDelay;
        const angle = 2 * Math.PI * Math.max(0, since) / Theme.riseResponse;
        return since >= Theme.riseDuration ? 1 : 1 - (1 + angle) * Math.exp(-angle);
    }

    Component.onCompleted: begin()
    onFocusedChanged: {
        if (focused !== null && KeyboardUse.isCurrent) {
            ToolTips.show(focused, focused.label, ToolTips.BesideItem, Theme.workspace);
        } else {
            ToolTips.hide();
        }
    }
    Keys.onLeftPressed: go(currentRow - 1)
    Keys.onRightPressed: go(currentRow + 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
            event.accepted = true;
            root.go(event.key === Qt.Key_Home ? 0 : days.count - 1);
        }
    }

    Row {
        id: row
        anchors.fill: parent
        spacing: Math.max(Theme.leastBarGap, width / Theme.barGapsPerWidth)

        Repeater {
            id: days
            model: root.bars

            ActivityBar {
                id: day
                width: (row.width - (root.count - 1) * row.spacing) / root.count
                height: row.height
                part: root.risen(index)
                focus: index === root.currentRow
                activeFocusOnTab: index === root.currentRow
                onLabelChanged: ToolTips.change(day, day.label)
                onActiveFocusChanged: {
                    if (activeFocus) {
                        root.focused = day;
                    } else if (root.focused === day) {
                        root.focused = null;
                    }
                }
            }
        }
    }

    MouseArea {
        id: pointer
        readonly property ActivityBar day: containsMouse ? row.childAt(mouseX, mouseY) as ActivityBar : null

        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.NoButton
        onDayChanged: {
            ToolTips.hide();
            if (day !== null) {
                tip.restart(); // for each day anew
            }
        }
    }

    HoverTip {
        id: tip
        item: pointer.day
        text: pointer.day?.label ?? ""
        colors: Theme.workspace
        isPointedAt: pointer.day !== null
    }

    FocusRing {
        parent: root.focused ?? root
        item: root.focused ?? root
        distance: Theme.barRingDistance
        itemRadius: Theme.barRadius
        visible: root.focused !== null && KeyboardUse.isCurrent
    }

    NumberAnimation {
        id: rise
        target: root
        property: "clock"
        from: 0
        to: root.end
        duration: root.end
    }

    Connections {
        target: root.bars
        function onModelReset(): void {
            root.begin();
        }
    }
}
