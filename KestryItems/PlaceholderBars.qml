pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// Bars in place of text, as many as there is room for.
Column {
    id: root

    required property color color
    readonly property real step: Theme.placeholderBarHeight + Theme.placeholderBarSpacing

    clip: true
    spacing: Theme.placeholderBarSpacing

    Repeater {
        model: Math.max(0, Math.floor((root.height + root.spacing) / root.step))

        Rectangle {
            required property int index

            width: root.width * (index % 2 === 0 ? 0.6 : 0.45)
            height: Theme.placeholderBarHeight
            radius: height / 2
            color: root.color
        }
    }
}
