import QtQuick
import KestryItems

/// A remark of a form.
Text {
    textFormat: Text.PlainText
    color: Theme.workspace.secondaryText
    font.pixelSize: Theme.smallFont
    lineHeight: 1.25
    wrapMode: Text.Wrap
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
