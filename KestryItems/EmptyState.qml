import QtQuick
import KestryItems

/// What stands in place of rows: why there are none, and what to do about it.
Column {
    id: root

    required property string symbol
    required property string title
    required property string line

    spacing: Theme.spacing
    Accessible.role: Accessible.StaticText
    Accessible.name: root.title + ". " + root.line

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Theme.emptySymbolSize
        height: Theme.emptySymbolSize
        name: root.symbol
        color: Theme.workspace.secondaryText
    }

    Text {
        width: parent.width
        topPadding: Theme.spacing
        text: root.title
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.sectionFont
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }

    Text {
        width: parent.width
        text: root.line
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
