import QtQuick
import Kestry
import KestryItems

/// Says that the program is saving while the disk takes its time.
Rectangle {
    id: root

    required property SavingSign saving

    implicitWidth: Math.ceil(words.implicitWidth) + 2 * Theme.buttonPadding
    implicitHeight: Theme.controlHeight
    radius: height / 2
    color: Theme.workspace.raisedSurface
    border.color: Theme.workspace.outline
    visible: root.saving.isShown
    Accessible.role: Accessible.AlertMessage
    Accessible.name: words.text

    Text {
        id: words
        anchors.centerIn: parent
        text: "Saving…"
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.bodyFont
        font.weight: Font.Medium
        Accessible.ignored: true
    }
}
