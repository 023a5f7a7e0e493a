import QtQuick
import KestryItems

/// Words that lead out of the program, to a page in the browser.
Pressable {
    id: root

    property ThemeColors colors: Theme.workspace

    implicitWidth: Math.ceil(words.implicitWidth)
    implicitHeight: Math.ceil(words.implicitHeight)
    opacity: root.isPressed ? Theme.quietPressedOpacity : 1
    Accessible.role: Accessible.Link

    Text {
        id: words
        width: parent.width
        text: root.label
        textFormat: Text.PlainText
        color: root.colors.primaryText
        font.pixelSize: Theme.bodyFont
        font.underline: true
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
