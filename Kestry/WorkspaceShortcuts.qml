pragma ComponentBehavior: Bound

import QtQuick
import Kestry

/// The keys that command the program while its window is in front.
Item {
    id: root

    required property WorkspaceBridge workspace
    /// Something lies over the window, and has the keys that would change what it is about.
    required property bool isCovered

    signal menuRequested
    signal keysRequested
    signal searchRequested

    function perform(command: int): void {
        switch (command) {
        case WindowKeys.ToggleSession:
            root.workspace.toggleSession();
            break;
        case WindowKeys.StopSession:
            root.workspace.stopSession();
            break;
        case WindowKeys.ShowNotch:
            root.workspace.showNotch();
            break;
        case WindowKeys.NewClient:
            root.workspace.newClient();
            break;
        case WindowKeys.Search:
            root.searchRequested();
            break;
        case WindowKeys.OpenSettings:
            root.workspace.openSettings();
            break;
        case WindowKeys.OpenMenu:
            root.menuRequested();
            break;
        case WindowKeys.ShowKeys:
            root.keysRequested();
            break;
        case WindowKeys.CloseWindow:
            root.Window.window.close();
            break;
        case WindowKeys.Quit:
            root.workspace.quit();
            break;
        }
    }

    Repeater {
        model: WindowKeys.commands
        delegate: Item {
            id: key
            required property var modelData

            Shortcut {
                sequences: WindowKeys.sequences(key.modelData.command)
                enabled: key.modelData.isAlways || !root.isCovered
                onActivated: root.perform(key.modelData.command)
            }
        }
    }
}
