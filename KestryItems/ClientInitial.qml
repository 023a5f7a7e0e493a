import QtQuick
import KestryItems

/// Stands for a client without a picture: the first letter of the name.
RoundedShape {
    id: root

    required property string name
    required property real size

    width: size
    height: size
    radius: 0.3 * size
    color: Qt.alpha(Theme.workspace.line, Theme.initialOpacity)
    Accessible.ignored: true

    Text {
        anchors.centerIn: parent
        text: root.name.length > 0 ? String.fromCodePoint(root.name.codePointAt(0)).toUpperCase() : ""
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: 0.4 * root.size
        font.weight: Font.Medium
        Accessible.ignored: true
    }
}
