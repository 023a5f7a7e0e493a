import QtQuick
import Kestry

/// Something else that can be done.
Rectangle {
    id: root

    required property string label

    signal triggered

    implicitWidth: Math.max(Theme.buttonMinimumWidth, words.implicitWidth + 2 * Theme.buttonPadding)
    implicitHeight: Theme.buttonHeight
    radius: Theme.controlRadius
    color: Theme.workspace.surface
    opacity: !enabled ? Theme.quietDisabledOpacity : pressArea.pressed ? Theme.quietPressedOpacity : 1
    activeFocusOnTab: true
    border.color: root.activeFocus ? Theme.workspace.primaryText : "transparent"
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.onPressAction: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onSpacePressed: root.triggered()

    Text {
        id: words
        anchors.centerIn: parent
        text: root.label
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.bodyFont
        font.weight: Font.Medium
        Accessible.ignored: true
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        onClicked: root.triggered()
    }
}
