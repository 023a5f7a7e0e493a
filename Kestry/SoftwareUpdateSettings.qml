import QtQuick
import Kestry
import KestryItems

/// When newer versions are looked for, and how it stands.
SettingsSection {
    id: root

    required property SoftwareUpdateBridge updates

    title: "Software updates"

    SettingsSwitch {
        symbol: "arrow.down.circle"
        title: "Check automatically"
        detail: "You choose when to install"
        isOn: root.updates.isAutomatic
        enabled: root.updates.canSwitch
        onToggled: root.updates.toggleAutomatic()
    }

    SettingsRow {
        symbol: "arrow.clockwise"
        title: "Check for updates"
        detail: root.updates.status

        QuietButtonStyle {
            label: "Check now"
            enabled: root.updates.canCheck
            onTriggered: root.updates.check()
        }
    }
}
