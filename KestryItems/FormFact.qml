import QtQuick
import KestryItems

/// A row of a form that can only be read: what it is on the left, its value on the right.
Item {
    id: root

    required property string label
    property string value
    property string symbol

    implicitHeight: Theme.controlHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: root.value.length > 0 ? root.label + ": " + root.value : root.label

    Symbol {
        id: glyph
        anchors.verticalCenter: parent.verticalCenter
        width: visible ? Theme.timerFont : 0
        height: Theme.timerFont
        name: root.symbol
        color: Theme.workspace.secondaryText
        visible: root.symbol.length > 0
    }

    Text {
        id: name
        anchors.left: glyph.right
        anchors.leftMargin: glyph.visible ? Theme.spacing : 0
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(Math.ceil(implicitWidth), root.width - x)
        text: root.label
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Text {
        anchors.left: name.right
        anchors.leftMargin: Theme.spacing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: root.value
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.timerFont
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignRight
        visible: text.length > 0
        Accessible.ignored: true
    }
}
