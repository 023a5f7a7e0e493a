import QtQuick
import KestryItems

/// A letter in each size and weight that the window opens with. While it lives, their fonts stay
/// loaded.
Item {
    Repeater {
        model: [
            {size: Theme.pageTitleFont, weight: Font.DemiBold},
            {size: Theme.timerFont, weight: Font.Normal},
            {size: Theme.timerFont, weight: Font.Medium},
            {size: Theme.bodyFont, weight: Font.Normal},
            {size: Theme.bodyFont, weight: Font.Medium},
            {size: Theme.bodyFont, weight: Font.DemiBold},
            {size: Theme.smallFont, weight: Font.Normal},
        ]
        delegate: Text {
            required property var modelData

            text: "a"
            textFormat: Text.PlainText
            font.pixelSize: modelData.size
            font.weight: modelData.weight
        }
    }
}
