pragma ComponentBehavior: Bound

import QtQuick

/// Text whose digits all take the same width, so that a running time stands still.
Row {
    id: root

    required property string text
    property color color: Theme.primaryText
    property font font

    TextMetrics {
        id: widestDigit
        font: root.font
        text: "0"
    }

    Repeater {
        model: root.text.length

        Text {
            required property int index
            readonly property string character: root.text.charAt(index)
            readonly property bool isDigit: character >= "0" && character <= "9"

            text: character
            width: isDigit ? Math.ceil(widestDigit.advanceWidth) : implicitWidth
            horizontalAlignment: Text.AlignHCenter
            color: root.color
            font: root.font
            Accessible.ignored: true
        }
    }
}
