import QtQuick
import Kestry
import KestryItems

/// One column of a month's summary: its heading, and two figures, side by side where they fit. A
/// heading that has a help text takes the keyboard, so that the text shows there too.
Item {
    id: root

    required property string title
    required property overviewCard first
    required property overviewCard second
    property string help: ""
    readonly property bool hasHelp: root.help.length > 0
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
        hoverEnabled: root.hasHelp
    }

    HoverTip {
        item: root
        text: root.help
        place: area.containsMouse ? ToolTips.BelowPointer : ToolTips.BesideItem
        colors: Theme.workspace
        isPointedAt: area.containsMouse || (heading.activeFocus && KeyboardUse.isCurrent)
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
        activeFocusOnTab: root.hasHelp
        Accessible.role: Accessible.Heading
        Accessible.name: text
        Accessible.description: root.help
        Accessible.focusable: root.hasHelp

        FocusRing {
            item: heading
        }
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
