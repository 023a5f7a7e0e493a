pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// Keys that belong together, each with what it does.
Column {
    id: root

    required property string title
    required property var rows

    spacing: Theme.tightSpacing

    Text {
        width: parent.width
        text: root.title
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Repeater {
        model: root.rows
        delegate: Item {
            id: row
            required property var modelData

            width: root.width
            height: Math.max(words.height, keys.height) + Theme.tightSpacing
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.words + ", " + modelData.keys

            Text {
                id: words
                anchors.left: parent.left
                anchors.right: keys.left
                anchors.rightMargin: Theme.fieldSpacing
                text: row.modelData.words
                textFormat: Text.PlainText
                color: Theme.workspace.primaryText
                font.pixelSize: Theme.timerFont
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            Text {
                id: keys
                anchors.right: parent.right
                // Half of the row is for what they do.
                width: Math.min(Math.ceil(implicitWidth), row.width / 2)
                horizontalAlignment: Text.AlignRight
                wrapMode: Text.Wrap
                text: row.modelData.keys
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.timerFont
                Accessible.ignored: true
            }
        }
    }
}
