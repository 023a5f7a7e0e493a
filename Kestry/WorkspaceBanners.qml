import QtQuick
import Kestry
import KestryItems

/// What stands above every page for as long as it holds.
Column {
    id: root

    required property WorkspaceBridge workspace

    /// The keyboard was on a banner that has gone, and no other can have it.
    signal exited

    /// Takes the keyboard from a banner that has gone to the one that is nearest.
    function leave(gone: Banner): void {
        if (!gone.visible && gone.hasKeyboard) {
            if (recovery.visible) {
                recovery.takeFocus();
            } else if (jump.visible) {
                jump.takeFocus();
            } else {
                root.exited();
            }
        }
    }

    Accessible.role: Accessible.Grouping
    Accessible.name: "Notices"
    Accessible.ignored: height === 0

    Banner {
        width: root.width
        visible: root.workspace.isDemo
        symbol: "sparkle"
        heading: "DESIGN PREVIEW"
        line: "·  Sample data. Changes stay in this preview."
    }

    Banner {
        id: recovery
        width: root.width
        visible: root.workspace.isRecovered
        symbol: "arrow.clockwise.circle"
        line: "Your session was recovered and paused at its last saved checkpoint."
        action: "Dismiss"
        onTriggered: root.workspace.dismissRecovery()
        onVisibleChanged: root.leave(recovery)
    }

    Banner {
        id: jump
        width: root.width
        visible: root.workspace.clockJump.length > 0
        symbol: "clock"
        line: root.workspace.clockJump
        action: "Dismiss"
        onTriggered: root.workspace.dismissClockJump()
        onVisibleChanged: root.leave(jump)
    }
}
