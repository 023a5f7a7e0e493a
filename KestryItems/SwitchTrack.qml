import QtQuick
import KestryItems

/// The picture of a switch.
Rectangle {
    id: root

    required property bool isOn

    implicitWidth: Theme.toggleWidth
    implicitHeight: Theme.toggleHeight
    radius: height / 2
    color: root.isOn ? Theme.workspace.accent : Theme.workspace.track
    border.color: root.isOn ? "transparent" : Theme.workspace.controlLine

    Rectangle {
        x: root.isOn ? parent.width - width - Theme.toggleInset : Theme.toggleInset
        anchors.verticalCenter: parent.verticalCenter
        width: parent.height - 2 * Theme.toggleInset
        height: width
        radius: width / 2
        color: root.isOn ? Theme.workspace.accentText : Theme.workspace.primaryText
    }
}
