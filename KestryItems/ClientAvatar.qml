import QtQuick
import KestryItems

/// The logo of a client, or the first letter of the name.
AvatarShape {
    id: root

    required property real size

    width: size
    height: size
    color: Qt.alpha(Theme.workspace.line, Theme.initialOpacity)
    Accessible.ignored: true

    Text {
        anchors.centerIn: parent
        text: root.initial
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: 0.4 * root.size
        font.weight: Font.Medium
        visible: !root.hasLogo
        Accessible.ignored: true
    }
}
