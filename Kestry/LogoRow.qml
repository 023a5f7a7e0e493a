import QtQuick
import Kestry
import KestryItems

/// The logo of a client, with what can be done to it. A picture can be dropped on it.
Item {
    id: root

    required property ClientForm form
    readonly property bool hasLogo: root.form.logo.toString().length > 0

    implicitHeight: Math.max(avatar.height, texts.implicitHeight)

    Rectangle {
        id: avatar
        width: Theme.logoSize
        height: Theme.logoSize
        radius: 0.3 * width
        color: root.hasLogo ? "transparent" : Qt.alpha(Theme.workspace.line, 0.05)
        border.width: drop.containsDrag ? 2 : 0
        border.color: Theme.workspace.accent
        opacity: root.form.isImportingLogo ? Theme.pressedOpacity : 1
        Accessible.role: Accessible.Graphic
        Accessible.name: root.hasLogo ? "Client logo" : "No client logo"

        Text {
            anchors.centerIn: parent
            text: root.form.initial
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: 0.4 * Theme.logoSize
            font.weight: Font.Medium
            visible: !root.hasLogo
            Accessible.ignored: true
        }

        Image {
            anchors.fill: parent
            source: root.form.logo
            sourceSize: Qt.size(2 * width, 2 * height)
            fillMode: Image.PreserveAspectFit
            smooth: true
        }
    }

    Column {
        id: texts
        anchors.left: avatar.right
        anchors.leftMargin: Theme.fieldSpacing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spacing

        Row {
            spacing: Theme.spacing

            QuietButtonStyle {
                label: root.hasLogo ? "Change logo" : "Choose logo"
                visible: root.form.canImportLogo
                enabled: !root.form.isImportingLogo
                onTriggered: root.form.chooseLogo()
            }

            QuietButtonStyle {
                label: "Remove logo"
                visible: root.hasLogo
                onTriggered: root.form.removeLogo()
            }
        }

        FormNote {
            width: parent.width
            text: root.form.isImportingLogo ? "Importing the logo…"
                : root.form.logoNote
            visible: root.form.canImportLogo && root.form.logoImportError.length === 0
        }

        FormMessage {
            width: parent.width
            message: root.form.logoImportError
        }
    }

    DropArea {
        id: drop
        anchors.fill: parent
        enabled: root.form.canImportLogo
        keys: ["text/uri-list"]
        onDropped: event => {
            if (event.urls.length > 0) {
                root.form.importLogo(event.urls[0]);
                event.accept();
            }
        }
    }
}
