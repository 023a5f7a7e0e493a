import QtQuick
import Kestry
import KestryItems

/// The session in progress on another device, which is only told: it stays with that device.
Item {
    id: root

    required property SidebarSession box

    implicitHeight: Math.ceil(lines.implicitHeight)
    Accessible.role: Accessible.StaticText
    Accessible.name: root.box.remoteTitle + ", " + root.box.remoteState

    Symbol {
        id: sign
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.sidebarSymbolSize
        height: Theme.sidebarSymbolSize
        name: "laptopcomputer.and.iphone"
        color: Theme.workspace.secondaryText
    }

    Column {
        id: lines
        anchors.left: sign.right
        anchors.leftMargin: Theme.controlPadding
        anchors.right: parent.right

        Text {
            objectName: "remoteTitle"
            width: parent.width
            text: root.box.remoteTitle
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.bodyFont
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 2
            Accessible.ignored: true
        }

        Text {
            objectName: "remoteState"
            width: parent.width
            // A length does not go over two lines.
            text: root.box.remoteState.replace(/ (?=\d+m$)/, "\u00a0")
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.smallFont
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
