import QtQuick

/// What went wrong, in one line; all of it while the pointer is on it.
Item {
    id: root

    required property string message
    readonly property bool isUnfolded: pointer.hovered && (line.truncated || line.lineCount > 1)

    implicitHeight: isUnfolded ? line.implicitHeight + Theme.tightSpacing : Theme.messageHeight
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.message

    Text {
        id: line
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        text: root.message
        color: Theme.attention
        font.pixelSize: Theme.captionFont
        wrapMode: pointer.hovered ? Text.Wrap : Text.NoWrap
        elide: pointer.hovered ? Text.ElideNone : Text.ElideRight
        Accessible.ignored: true
    }

    HoverHandler { id: pointer }
}
