import QtQuick
import Kestry
import KestryItems

/// The logo of a client, with what can be done to it. A picture can be dropped on it.
Item {
    id: root

    required property ClientForm form
    readonly property bool hasLogo: avatar.hasLogo

    implicitHeight: Math.max(avatar.height, texts.implicitHeight)

    ClientAvatar {
        id: avatar
        size: Theme.logoSize
        name: root.form.name
        logo: root.form.logo
        opacity: root.form.isImportingLogo ? Theme.pressedOpacity : 1
        Accessible.ignored: false
        Accessible.role: Accessible.Graphic
        Accessible.name: root.hasLogo ? "Client logo" : "No client logo"

        Rectangle {
            anchors.fill: parent
            radius: 0.3 * width
            color: "transparent"
            border.width: Theme.ringWidth
            border.color: Theme.workspace.accent
            visible: drop.containsDrag
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
                id: chooseButton
                label: root.hasLogo ? "Change logo" : "Choose logo"
                visible: root.form.canImportLogo
                onTriggered: root.form.chooseLogo()
            }

            QuietButtonStyle {
                id: removeButton
                label: "Remove logo"
                visible: root.hasLogo
                onTriggered: {
                    const hadKeyboard = removeButton.activeFocus;
                    root.form.removeLogo();
                    if (hadKeyboard && chooseButton.visible) {
                        chooseButton.forceActiveFocus(); // this one is hidden now
                    }
                }
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

    LiveMessage {
        message: root.form.isImportingLogo ? "Importing the logo…" : ""
    }

    DropArea {
        id: drop
        anchors.fill: parent
        enabled: root.form.canImportLogo
        keys: ["text/uri-list"]
        onDropped: event => {
            if (event.urls.length > 0) {
                root.form.importLogo(event.urls[0]);
                event.accept(Qt.CopyAction); // the file stays where it is
            }
        }
    }
}
