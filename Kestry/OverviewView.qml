import QtQuick
import Kestry
import KestryItems

/// What a month has earned so far, and where it is heading.
FocusScope {
    id: root

    required property OverviewBridge overview
    readonly property alias page: scroller

    Component.onCompleted: root.overview.open()
    Component.onDestruction: root.overview.close()

    ScrollingPage {
        id: scroller
        anchors.fill: parent
        focus: true
        contentHeight: blocks.y + blocks.height + Theme.overviewBottom

        Column {
            id: blocks
            x: Theme.pageMargin
            y: Theme.overviewTop
            width: root.width - 2 * Theme.pageMargin
            spacing: Theme.sheetPadding

            Item {
                width: parent.width
                height: Math.max(title.implicitHeight, months.height)

                Text {
                    id: title
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - months.width - Theme.buttonHeight - Theme.spacing
                    text: "Overview"
                    textFormat: Text.PlainText
                    color: Theme.workspace.primaryText
                    font.pixelSize: Theme.pageTitleFont
                    font.weight: Font.DemiBold
                    horizontalAlignment: Text.AlignLeft
                    elide: Text.ElideRight
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }

                MonthNavigation {
                    id: months
                    anchors.right: parent.right
                    // The main menu is beside it.
                    anchors.rightMargin: Theme.buttonHeight
                    anchors.verticalCenter: parent.verticalCenter
                    month: root.overview.month
                    canGoOn: root.overview.canGoOn
                    onPreviousAsked: root.overview.previousMonth()
                    onNextAsked: root.overview.nextMonth()
                }
            }

            FirstClientBlock {
                width: parent.width
                visible: !root.overview.hasClients
                onAddAsked: root.overview.addClient()
            }

            MonthContent {
                width: parent.width
                visible: root.overview.hasClients
                focus: true
                overview: root.overview
            }
        }
    }
}
