pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// The hours of each day of a month. The keyboard walks from day to day.
FocusScope {
    id: root

    required property ActivityBars bars
    /// Of the axis, from the top: a list of texts.
    required property var scaleLabels
    /// Below the days: a list of texts.
    required property var dayLabels
    /// All of it in words.
    required property string spoken

    implicitHeight: Theme.chartHeight + Theme.spacing + names.height
    Accessible.role: Accessible.Chart
    Accessible.name: "Daily activity"
    Accessible.description: root.spoken

    Item {
        id: axis
        width: Math.max(Theme.axisWidth, Math.ceil(widest.advanceWidth))
        height: Theme.chartHeight

        TextMetrics {
            id: widest
            font.pixelSize: Theme.captionFont
            text: root.scaleLabels[0] ?? ""
        }

        Repeater {
            model: root.scaleLabels

            Text {
                required property string modelData
                required property int index

                y: index * (axis.height - height) / 2
                text: modelData
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.captionFont
                Accessible.ignored: true
            }
        }
    }

    ActivityDays {
        id: area
        anchors.left: axis.right
        anchors.leftMargin: Theme.spacing
        anchors.right: parent.right
        height: Theme.chartHeight
        focus: true
        bars: root.bars
    }

    Item {
        id: names
        anchors.left: area.left
        anchors.right: area.right
        anchors.top: area.bottom
        anchors.topMargin: Theme.spacing
        height: childrenRect.height

        Repeater {
            model: root.dayLabels

            Text {
                required property string modelData
                required property int index

                // Below the first, the 10th and the 20th.
                x: Math.max(0, 10 * index - 1) * (area.width + area.spacing) / area.count
                text: modelData
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.captionFont
                Accessible.ignored: true
            }
        }
    }
}
