import QtQuick
import KestryItems

/// A strip with something to know, and perhaps a button. It is as high as its text needs.
Rectangle {
    id: root

    required property string symbol
    required property string line
    property string heading
    property string action
    readonly property bool hasKeyboard: button.activeFocus

    signal triggered

    function takeFocus(): void {
        button.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: Math.max(Theme.bannerHeight, Math.ceil(message.implicitHeight) + 2 * Theme.bannerPadding)
    color: Theme.workspace.surface
    Accessible.role: Accessible.StaticText
    Accessible.name: root.heading.length > 0 ? root.heading + " " + root.line : root.line

    Symbol {
        id: sign
        anchors.left: parent.left
        anchors.leftMargin: Theme.pageMargin
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.sidebarSymbolSize
        height: Theme.sidebarSymbolSize
        name: root.symbol
        color: Theme.workspace.accent
    }

    Text {
        id: title
        anchors.left: sign.right
        anchors.leftMargin: Theme.controlPadding
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
        id: message
        objectName: "line"
        anchors.left: title.visible ? title.right : sign.right
        anchors.leftMargin: title.visible ? Theme.spacing : Theme.controlPadding
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: button.visible ? Theme.controlPadding : Theme.pageMargin
        anchors.verticalCenter: parent.verticalCenter
        text: root.line
        textFormat: Text.PlainText
        color: root.heading.length > 0 ? Theme.workspace.secondaryText : Theme.workspace.primaryText
        font.pixelSize: Theme.bodyFont
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }

    QuietButtonStyle {
        id: button
        anchors.right: parent.right
        anchors.rightMargin: Theme.pageMargin
        anchors.verticalCenter: parent.verticalCenter
        fill: Theme.workspace.field
        label: root.action
        visible: root.action.length > 0
        onTriggered: root.triggered()
    }
}
