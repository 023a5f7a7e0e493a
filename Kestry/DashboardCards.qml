import QtQuick
import Kestry
import KestryItems

/// The four figures of a client in one row, or two by two where that is too narrow, and what they
/// leave out.
Column {
    id: root

    required property ClientDashboardBridge dashboard
    readonly property int columns: width >= 4 * Theme.cardMinimum + 3 * Theme.cardGap ? 4 : 2
    readonly property real cardWidth: (width - (columns - 1) * Theme.cardGap) / columns
    readonly property real cardHeight: Math.max(earnings.implicitHeight, hours.implicitHeight,
        monthHours.implicitHeight, average.implicitHeight)

    spacing: Theme.belowCards

    Grid {
        columns: root.columns
        spacing: Theme.cardGap

        DashboardCard {
            id: earnings
            width: root.cardWidth
            height: root.cardHeight
            figure: root.dashboard.earnings
        }

        DashboardCard {
            id: hours
            width: root.cardWidth
            height: root.cardHeight
            figure: root.dashboard.hours
        }

        DashboardCard {
            id: monthHours
            width: root.cardWidth
            height: root.cardHeight
            figure: root.dashboard.monthHours
        }

        DashboardCard {
            id: average
            width: root.cardWidth
            height: root.cardHeight
            figure: root.dashboard.average
        }
    }

    Text {
        width: parent.width
        text: root.dashboard.unpriced
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        wrapMode: Text.Wrap
        visible: text.length > 0
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
