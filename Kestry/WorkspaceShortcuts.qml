import QtQuick
import Kestry

/// The keys that command the program while its window is in front.
Item {
    id: root

    required property WorkspaceBridge workspace
    /// Something lies over the window, and has the keys that would change what it is about.
    required property bool isCovered

    signal menuRequested

    Shortcut {
        sequence: "Ctrl+N"
        enabled: !root.isCovered
        onActivated: root.workspace.newClient()
    }

    Shortcut {
        sequence: "Ctrl+,"
        enabled: !root.isCovered
        onActivated: root.workspace.openSettings()
    }

    Shortcut {
        sequence: "Ctrl+T"
        onActivated: root.workspace.toggleSession()
    }

    Shortcut {
        sequence: "Ctrl+Shift+S"
        onActivated: root.workspace.stopSession()
    }

    Shortcut {
        sequence: "Ctrl+Alt+N"
        onActivated: root.workspace.showNotch()
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: root.Window.window.close()
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: root.workspace.quit()
    }

    Shortcut {
        sequence: "F10"
        enabled: !root.isCovered
        onActivated: root.menuRequested()
    }
}
