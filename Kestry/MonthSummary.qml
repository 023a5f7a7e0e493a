import QtQuick
import Kestry
import KestryItems

/// What a month has earned, and where it is heading: two columns, one above the other where there
/// is no room for both.
Item {
    id: root

    required property OverviewBridge overview
    readonly property bool isStacked: width < Theme.leastSummaryWidth
    readonly property real columnWidth: isStacked ? width : (width - 2 * Theme.summaryGap - 1) / 2

    implicitHeight: isStacked ? projected.y + projected.implicitHeight
                              : Math.max(recorded.implicitHeight, projected.implicitHeight)

    MonthFigures {
        id: recorded
        width: root.columnWidth
        title: root.overview.recordedTitle
        first: root.overview.billableEarnings
        second: root.overview.trackedTime
        secondLabel: "View sessions for this month"
        onSecondTriggered: root.overview.viewAll()
    }

    Rectangle {
        x: root.isStacked ? 0 : root.columnWidth + Theme.summaryGap
        y: root.isStacked ? recorded.implicitHeight + Theme.summaryGap : 0
        width: root.isStacked ? root.width : 1
        height: root.isStacked ? 1 : root.height
        color: Theme.workspace.outline
    }

    MonthFigures {
        id: projected
        x: root.isStacked ? 0 : root.width - width
        y: root.isStacked ? recorded.implicitHeight + 2 * Theme.summaryGap + 1 : 0
        width: root.columnWidth
        title: root.overview.projectedTitle
        help: root.overview.projectedHelp
        first: root.overview.projectedEarnings
        second: root.overview.projectedTime
    }
}
