import QtQuick
import KestryItems

/// A session that runs on another device. It is only told: it stays with that device.
Item {
    id: root

    required property string title
    required property string detail

    implicitHeight: lines.height + Theme.settingsInset
    Accessible.role: Accessible.StaticText
    Accessible.name: root.title + ", " + root.detail

    Symbol {
        y: Theme.captionRise
        width: Theme.settingsSymbolSize
        height: Theme.settingsSymbolSize
        name: "laptopcomputer.and.iphone"
        color: Theme.workspace.secondaryText
    }

    Column {
        id: lines
        x: Theme.settingsSymbolSize + Theme.controlPadding
        width: root.width - x
        spacing: Theme.rowTextSpacing

        Text {
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            font.weight: Font.Medium
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        Text {
            width: parent.width
            text: root.detail
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
