pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// How the program counts, for those who want to know.
Rectangle {
    id: root

    readonly property var notes: [
        {title: "Sleep & quit", words: "Pauses the timer until you resume."},
        {title: "Recovery", words: "Checkpoints every 15 seconds. After an unexpected close, the timer recovers paused at the last checkpoint."},
        {title: "Projections", words: "Earnings and hours follow your calendar-day pace. Estimates aren’t guaranteed work or payment."}
    ]

    readonly property alias isBeingRead: disclosure.isBeingRead

    height: disclosure.height
    radius: Theme.boxRadius
    color: Theme.workspace.raisedSurface
    border.color: Theme.workspace.outline

    Disclosure {
        id: disclosure
        width: parent.width
        title: "How tracking works"

        Repeater {
            model: root.notes
            delegate: Column {
                id: note
                required property var modelData

                width: parent.width
                bottomPadding: Theme.settingsInset
                spacing: Theme.tightSpacing
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.title + ", " + modelData.words

                Text {
                    width: parent.width
                    text: note.modelData.title
                    textFormat: Text.PlainText
                    color: Theme.workspace.primaryText
                    font.pixelSize: Theme.bodyFont
                    font.weight: Font.Medium
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }

                Text {
                    width: parent.width
                    text: note.modelData.words
                    textFormat: Text.PlainText
                    color: Theme.workspace.secondaryText
                    font.pixelSize: Theme.bodyFont
                    lineHeight: 1.25
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
            }
        }
    }
}
