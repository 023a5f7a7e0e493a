import QtQuick
import Kestry
import KestryItems

/// A saved session.
SessionRowFrame {
    id: root

    required property string date
    required property string duration
    required property string value
    /// All of it in one line.
    required property string spoken

    Accessible.role: Accessible.ListItem
    Accessible.name: root.spoken
    Accessible.focusable: true
    Accessible.onPressAction: if (root.enabled) root.triggered()

    Text {
        anchors.right: parent.right
        anchors.rightMargin: root.table.afterDate
        y: Math.round(root.dateLine - height / 2)
        width: root.table.date
        text: root.date
        textFormat: Text.PlainText
        // In line with the others, in whichever language.
        horizontalAlignment: root.table.hasDateColumn ? Text.AlignLeft : Text.AlignRight
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    MorphingText {
        id: length
        anchors.right: parent.right
        anchors.rightMargin: root.table.afterDuration
        y: Math.round(root.figureLine - height / 2)
        text: root.duration
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.timerFont
        reducesMotion: true
    }

    Text {
        anchors.right: parent.right
        y: Math.round(root.figureLine - height / 2)
        width: root.table.value
        text: root.value
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        // A long amount is smaller, as long as it can be read.
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.captionFont
        font.pixelSize: Theme.timerFont
        horizontalAlignment: Text.AlignRight
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
