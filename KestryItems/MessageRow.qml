import QtQuick
import KestryItems

/// What went wrong, in one line; all of it while the pointer rests on it.
Item {
    id: root

    required property string message

    implicitHeight: Theme.messageHeight
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.message

    Symbol {
        id: sign
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.smallSymbolSize
        height: Theme.smallSymbolSize
        name: "exclamationmark.triangle"
        color: Theme.dark.attention
    }

    Text {
        id: line
        objectName: "line"
        anchors.left: sign.right
        anchors.leftMargin: Theme.tightSpacing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: root.message
        textFormat: Text.PlainText
        maximumLineCount: 1
        color: Theme.dark.attention
        font.pixelSize: Theme.panelCaptionFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    HoverHandler { id: pointer }

    HoverTip {
        item: root
        text: line.truncated ? root.message : ""
        isPointedAt: pointer.hovered
    }
}
