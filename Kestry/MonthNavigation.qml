import QtQuick
import Kestry
import KestryItems

/// The month that is shown, between the buttons that lead to the others.
Row {
    id: root

    required property string month
    required property bool canGoOn

    signal previousAsked
    signal nextAsked

    height: Theme.monthButtonHeight

    MonthButton {
        label: "Previous month"
        symbol: "chevron.left"
        onTriggered: root.previousAsked()
    }

    Item {
        id: name
        width: Math.max(Theme.leastMonthWidth, Math.ceil(words.implicitWidth))
        height: parent.height
        Accessible.role: Accessible.StaticText
        Accessible.name: root.month

        MorphingText {
            id: words
            anchors.centerIn: parent
            text: root.month
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            reducesMotion: Theme.reducesMotion
        }
    }

    MonthButton {
        label: "Next month"
        symbol: "chevron.right"
        enabled: root.canGoOn
        onTriggered: root.nextAsked()
    }
}
