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

    SwitchTrack {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        isOn: root.isOn

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
