pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// Letters in each size and weight that the window opens with. While they live, their fonts stay
/// loaded, and what was measured of the letters is known.
Item {
    id: root

    readonly property var fonts: [
        {size: Theme.pageTitleFont, weight: Font.DemiBold},
        {size: Theme.figureFont, weight: Font.DemiBold},
        {size: Theme.sectionFont, weight: Font.Medium},
        {size: Theme.rowFont, weight: Font.Normal},
        {size: Theme.rowFont, weight: Font.Medium},
        {size: Theme.timerFont, weight: Font.Normal},
        {size: Theme.timerFont, weight: Font.Medium},
        {size: Theme.bodyFont, weight: Font.Normal},
        {size: Theme.bodyFont, weight: Font.Medium},
        {size: Theme.bodyFont, weight: Font.DemiBold},
        {size: Theme.smallFont, weight: Font.Normal},
        {size: Theme.captionFont, weight: Font.Normal},
    ]

    Repeater {
        model: root.fonts
        delegate: Text {
            required property var modelData

            text: "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789$.,:"
            textFormat: Text.PlainText
            font.pixelSize: modelData.size
            font.weight: modelData.weight
            Accessible.ignored: true
        }
    }

    ClientAvatar {
        size: Theme.sidebarMarkSize
        name: "a"
        logo: null
    }
}
