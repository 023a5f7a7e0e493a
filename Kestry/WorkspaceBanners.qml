import QtQuick
import Kestry
import KestryItems

/// What stands above every page for as long as it holds.
Column {
    id: root

    required property WorkspaceBridge workspace

    Loader {
        width: root.width
        active: root.workspace.isDemo
        visible: active
        sourceComponent: Banner {
            symbol: "sparkle"
            heading: "DESIGN PREVIEW"
            line: "·  Sample data. Changes stay in this preview."
        }
    }

    Loader {
        width: root.width
        active: root.workspace.isRecovered
        visible: active
        sourceComponent: Banner {
            symbol: "arrow.clockwise.circle"
            line: "Your session was recovered and paused at its last saved checkpoint."
            action: "Dismiss"
            onTriggered: root.workspace.dismissRecovery()
        }
    }

    Loader {
        width: root.width
        active: root.workspace.clockJump.length > 0
        visible: active
        sourceComponent: Banner {
            symbol: "clock"
            line: root.workspace.clockJump
            action: "Dismiss"
            onTriggered: root.workspace.dismissClockJump()
        }
    }
}
