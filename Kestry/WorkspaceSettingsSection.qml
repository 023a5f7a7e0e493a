import QtQuick
import Kestry
import KestryItems

/// What of the program stands on the screen besides its window.
SettingsSection {
    id: root

    required property SettingsBridge settings

    title: "Workspace"

    SettingsSwitch {
        symbol: "macbook"
        title: "Notch controls"
        detail: "Keep your timer at the top of the screen"
        isOn: root.settings.notchEnabled
        onToggled: root.settings.toggleNotch()
    }

    SettingsSwitch {
        symbol: "menubar.rectangle"
        title: "Kestry in menu bar"
        detail: "Quick access alongside the notch"
        isOn: root.settings.menuBarEnabled
        onToggled: root.settings.toggleMenuBar()
    }
}
