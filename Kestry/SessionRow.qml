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
        anchors.rightMargin: root.table.figures
        anchors.verticalCenter: parent.verticalCenter
        width: root.table.date
        text: root.date
        visible: root.table.showsDate
        textFormat: Text.PlainText
        // In line with the others, in whichever language.
        horizontalAlignment: Text.AlignLeft
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    MorphingText {
        id: length
        anchors.right: parent.right
        anchors.rightMargin: root.table.value + Theme.columnGap
        anchors.verticalCenter: parent.verticalCenter
        text: root.duration
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.timerFont
        reducesMotion: true
    }

    Text {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
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
