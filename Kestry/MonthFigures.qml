import QtQuick
import Kestry
import KestryItems

/// One column of a month's summary: its heading, and two figures, side by side where they fit.
Item {
    id: root

    required property string title
    required property overviewCard first
    required property overviewCard second
    property string help: ""
    /// What a press on the second figure does; without a label it is no button.
    property string secondLabel: ""
    readonly property bool isWide: width >= Theme.summaryGap
        + 2 * Math.ceil(Math.max(firstFigure.wishedWidth, secondFigure.wishedWidth))
    readonly property real figureWidth: isWide ? (width - Theme.summaryGap) / 2 : width

    signal secondTriggered

    implicitHeight: figures.y + figures.implicitHeight

    MouseArea {
        id: area
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        hoverEnabled: root.help.length > 0
    }

    HoverTip {
        item: root
        text: root.help
        colors: Theme.workspace
        isPointedAt: area.containsMouse
    }

    Text {
        id: heading
        width: parent.width
        text: root.title
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.rowFont
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
        Accessible.description: root.help
    }

    Grid {
        id: figures
        y: heading.height + Theme.sectionSpacing
        columns: root.isWide ? 2 : 1
        columnSpacing: Theme.summaryGap
        rowSpacing: Theme.sectionSpacing

        MonthFigure {
            id: firstFigure
            width: root.figureWidth
            card: root.first
            Accessible.role: Accessible.StaticText
            Accessible.name: root.first.spoken
        }

        Item {
            width: root.figureWidth
            height: secondFigure.implicitHeight

            MonthFigure {
                id: secondFigure
                width: parent.width
                card: root.second
                Accessible.role: Accessible.StaticText
                Accessible.name: root.second.spoken
                Accessible.ignored: button.visible
            }

            Pressable {
                id: button
                anchors.fill: parent
                label: root.secondLabel
                visible: root.secondLabel.length > 0
                tip: label
                ringDistance: Theme.rowPadding
                tipColors: Theme.workspace
                Accessible.description: root.second.spoken
                onTriggered: root.secondTriggered()

                Rectangle {
                    anchors.fill: parent
                    anchors.margins: -Theme.rowPadding
                    z: -1
                    radius: Theme.controlRadius
                    color: Theme.workspace.highlight
                    opacity: button.isPressed ? 1 : Theme.pointedOpacity
                    visible: button.isHighlighted
                }
            }
        }
    }
}
