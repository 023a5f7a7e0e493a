import QtQuick
import Kestry
import KestryItems

/// How the program stands on this desktop.
SettingsSection {
    id: root

    required property DesktopChoices choices

    signal keysAsked

    title: "Desktop"
    Component.onCompleted: root.choices.open()

    SettingsSwitch {
        symbol: "power"
        title: "Start with the desktop"
        detail: "Your timer is there when you log in"
        isOn: root.choices.startsWithDesktop
        onToggled: root.choices.toggleAutostart()
    }

    SettingsRow {
        symbol: "display"
        title: "Where the panel stands"
        detail: root.choices.screenDetail

        MenuButton {
            width: Math.min(implicitWidth, Theme.menuTextMaximum)
            label: "Screen of the panel"
            value: root.choices.screen
            onOpened: item => root.choices.openScreens(item)
        }
    }

    SettingsRow {
        symbol: "rectangle.topthird.inset.filled"
        title: "Place of the panel"
        detail: "At the top of the screen"

        SegmentedChoice {
            label: "Place of the panel"
            options: root.choices.sides
            current: root.choices.side
            onChosen: index => root.choices.chooseSide(index)
        }
    }

    SettingsRow {
        symbol: "keyboard"
        title: "Keyboard shortcuts"
        detail: "All keys of this window"

        QuietButtonStyle {
            label: "Show keys"
            onTriggered: root.keysAsked()
        }
    }
}
