import QtQuick
import KestryItems

/// A strip with something to know, and perhaps a button.
Rectangle {
    id: root

    required property string symbol
    required property string line
    property string heading
    property string action

    signal triggered

    implicitHeight: Theme.bannerHeight
    color: Theme.workspace.surface
    Accessible.role: Accessible.StaticText
    Accessible.name: root.heading.length > 0 ? root.heading + " " + root.line : root.line

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.pageMargin
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spacing + Theme.tightSpacing

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.sidebarSymbolSize
            height: Theme.sidebarSymbolSize
            name: root.symbol
            color: Theme.workspace.accent
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.heading
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.captionFont
            font.weight: Font.Medium
            font.letterSpacing: 1.0
            visible: root.heading.length > 0
            Accessible.ignored: true
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.line
            textFormat: Text.PlainText
            color: root.heading.length > 0
                ? Theme.workspace.secondaryText : Theme.workspace.primaryText
            font.pixelSize: Theme.bodyFont
            Accessible.ignored: true
        }
    }

    QuietButtonStyle {
        anchors.right: parent.right
        anchors.rightMargin: Theme.pageMargin
        anchors.verticalCenter: parent.verticalCenter
        label: root.action
        visible: root.action.length > 0
        onTriggered: root.triggered()
    }
}
