import QtQuick
import KestryItems

/// A tool tip: a few words beside what the pointer is on.
RoundedShape {
    id: root

    required property string text
    required property ThemeColors colors

    implicitWidth: Math.ceil(words.width) + 2 * Theme.tipPadding
    implicitHeight: Math.ceil(words.height) + 2 * Theme.tipPadding
    color: colors.raisedSurface
    outline: colors.tipOutline
    Accessible.role: Accessible.ToolTip
    Accessible.name: root.text

    Text {
        id: words
        x: Theme.tipPadding
        y: Theme.tipPadding
        width: Math.min(Theme.tipMaximumWidth, Math.ceil(implicitWidth))
        text: root.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        color: root.colors.primaryText
        font.pixelSize: Theme.smallFont
        Accessible.ignored: true
    }
}
