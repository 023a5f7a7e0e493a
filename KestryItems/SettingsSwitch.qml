import QtQuick
import KestryItems

/// A setting that is on or off.
SettingsRow {
    id: root

    required property bool isOn

    signal toggled

    isSpokenByControl: true

    Pressable {
        id: control
        implicitWidth: Theme.toggleWidth
        implicitHeight: Theme.toggleHeight
        label: root.title
        Accessible.role: Accessible.CheckBox
        Accessible.description: enabled ? root.detail : root.detail + ". Not available"
        Accessible.checkable: true
        Accessible.checked: root.isOn
        Accessible.onToggleAction: control.press()
        onTriggered: root.toggled()

        SwitchTrack {
            anchors.fill: parent
            opacity: control.enabled ? 1 : Theme.quietDisabledOpacity
            isOn: root.isOn
        }
    }
}
