import QtQuick
import Kestry
import KestryItems

/// A figure of a client: what it is, how much, and of what. One that has a help text takes the
/// keyboard, so that the text shows there too.
Rectangle {
    id: root

    required property dashboardFigure figure
    readonly property bool hasHelp: root.figure.help.length > 0
    readonly property real room: width - 2 * Theme.cardPadding

    implicitHeight: words.implicitHeight + 2 * Theme.cardPadding
    radius: Theme.boxRadius
    color: Theme.workspace.raisedSurface
    border.color: Theme.workspace.outline
    activeFocusOnTab: root.hasHelp
    Accessible.role: Accessible.StaticText
    Accessible.name: root.figure.spoken
    Accessible.description: root.figure.help
    Accessible.focusable: root.hasHelp

    TextMetrics {
        id: metrics
        font.pixelSize: Theme.elapsedFont
        font.weight: Font.DemiBold
        text: root.figure.value
    }

    Column {
        id: words
        x: Theme.cardPadding
        y: Theme.cardPadding
        width: root.room
        spacing: Theme.tightSpacing

        Text {
            width: parent.width
            text: root.figure.title
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        // Plain: digits that roll here would be painted all the time while a session runs.
        Text {
            id: value
            text: root.figure.value
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            // An amount that is too long for its card is smaller, and whole.
            font.pixelSize: Math.floor(Theme.elapsedFont * Math.min(1, root.room / metrics.advanceWidth))
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }

        Text {
            width: parent.width
            text: root.figure.line
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }

    HoverHandler {
        id: pointer
        enabled: root.hasHelp
    }

    FocusRing {
        item: root
        itemRadius: root.radius
    }

    HoverTip {
        item: root
        text: root.figure.help
        place: pointer.hovered ? ToolTips.BelowPointer : ToolTips.BesideItem
        colors: Theme.workspace
        isPointedAt: pointer.hovered || (root.activeFocus && KeyboardUse.isCurrent)
    }
}
