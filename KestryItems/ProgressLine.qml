import QtQuick
import KestryItems

/// How much of something is done, from 0 to 1.
Rectangle {
    id: root

    required property real progress
    required property string label

    implicitHeight: Theme.progressHeight
    radius: height / 2
    color: Theme.workspace.highlight
    Accessible.role: Accessible.ProgressBar
    Accessible.name: root.label
    Accessible.description: Math.floor(100 * root.progress) + " %"

    Rectangle {
        anchors.left: parent.left
        width: Math.max(parent.height, root.progress * parent.width)
        height: parent.height
        radius: parent.radius
        color: Theme.workspace.accent
        visible: root.progress > 0
    }
}
