import QtQuick
import KestryItems

/// Why a form was refused; nothing where it was not.
Item {
    id: root

    required property string message

    implicitHeight: words.implicitHeight
    visible: root.message.length > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.message

    Symbol {
        id: sign
        y: 1
        width: Theme.timerFont
        height: Theme.timerFont
        name: "exclamationmark.circle"
        color: Theme.workspace.attention
    }

    Text {
        id: words
        anchors.left: sign.right
        anchors.leftMargin: Theme.spacing
        anchors.right: parent.right
        text: root.message
        textFormat: Text.PlainText
        color: Theme.workspace.attention
        font.pixelSize: Theme.bodyFont
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
