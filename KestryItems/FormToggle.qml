import QtQuick
import KestryItems

/// A labelled switch.
Item {
    id: root

    required property string label
    required property bool isOn

    signal toggled

    function toggle(): void {
        if (root.enabled && root.visible) {
            root.toggled();
        }
    }

    implicitHeight: Theme.fieldHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: root.label
    Accessible.checkable: true
    Accessible.checked: root.isOn
    Accessible.onPressAction: root.toggle()
    Accessible.onToggleAction: root.toggle()
    Keys.onSpacePressed: root.toggle()

    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: root.label
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.timerFont
        Accessible.ignored: true
    }

    Rectangle {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.toggleWidth
        height: Theme.toggleHeight
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

        FocusRing {
            item: root
            itemRadius: parent.radius
        }
    }

    MouseArea {
        anchors.fill: parent
        onClicked: root.toggled()
    }
}
