import QtQuick
import Kestry
import KestryItems

/// A figure of a month: what it is of, the figure, and a line on it.
Item {
    id: root

    required property overviewCard card
    /// The width at which nothing wraps.
    readonly property real wishedWidth: Math.max(metrics.advanceWidth, name.implicitWidth, line.implicitWidth)

    implicitHeight: content.implicitHeight

    TextMetrics {
        id: metrics
        font.pixelSize: Theme.figureFont
        font.weight: Font.DemiBold
        text: root.card.value
    }

    Column {
        id: content
        width: parent.width
        spacing: Theme.tightSpacing

        Text {
            id: name
            width: parent.width
            text: root.card.title
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        // Plain: digits that roll here would be painted all the time while a session runs.
        Text {
            text: root.card.value
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            // An amount that is too long for its column is smaller, and whole.
            font.pixelSize: Math.max(1, Math.floor(Theme.figureFont
                * Math.min(1, root.width / metrics.advanceWidth)))
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }

        Text {
            id: line
            width: parent.width
            text: root.card.line
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
