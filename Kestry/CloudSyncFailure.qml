import QtQuick
import KestryItems

/// Why records could not be exchanged, in full; nothing where they could.
Item {
    id: root

    required property string message

    height: words.height + Theme.settingsInset
    visible: root.message.length > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.message

    Symbol {
        width: Theme.settingsSymbolSize
        height: Theme.settingsSymbolSize
        name: "exclamationmark.icloud"
        color: Theme.workspace.attention
    }

    Text {
        id: words
        x: Theme.settingsTextInset - Theme.settingsInset
        width: root.width - x
        text: root.message
        textFormat: Text.PlainText
        color: Theme.workspace.attention
        font.pixelSize: Theme.bodyFont
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
