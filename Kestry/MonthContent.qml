import QtQuick
import Kestry
import KestryItems

/// All that the Overview tells of a month.
FocusScope {
    id: root

    required property OverviewBridge overview

    implicitHeight: recent.y + recent.implicitHeight

    MonthSummary {
        id: summary
        width: parent.width
        overview: root.overview
    }

    Column {
        id: activity
        anchors.top: summary.bottom
        anchors.topMargin: Theme.blockSpacing
        width: parent.width
        spacing: Theme.rowTextSpacing

        Text {
            width: parent.width
            text: "Daily activity"
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.sectionFont
            font.weight: Font.Medium
            horizontalAlignment: Text.AlignLeft
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Text {
            width: parent.width
            text: "Hours tracked this month"
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            horizontalAlignment: Text.AlignLeft
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    ActivityChart {
        id: chart
        anchors.top: activity.bottom
        anchors.topMargin: Theme.sectionSpacing
        width: parent.width
        bars: root.overview.bars
        scaleLabels: root.overview.scaleLabels
        dayLabels: root.overview.dayLabels
        spoken: root.overview.spokenActivity
    }

    RecentSessionsSection {
        id: recent
        anchors.top: chart.bottom
        anchors.topMargin: Theme.blockSpacing
        width: parent.width
        focus: true
        overview: root.overview
    }
}
