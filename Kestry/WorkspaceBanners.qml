import QtQuick
import Kestry
import KestryItems

/// What stands above every page for as long as it holds.
Column {
    id: root

    required property WorkspaceBridge workspace

    Banner {
        width: root.width
        symbol: "sparkle"
        heading: "DESIGN PREVIEW"
        line: "·  Sample data. Changes stay in this preview."
        visible: root.workspace.isDemo
    }

    Banner {
        width: root.width
        symbol: "arrow.clockwise.circle"
        line: "Your session was recovered and paused at its last saved checkpoint."
        action: "Dismiss"
        visible: root.workspace.isRecovered
        onTriggered: root.workspace.dismissRecovery()
    }

    Banner {
        width: root.width
        symbol: "clock"
        line: root.workspace.clockJump
        action: "Dismiss"
        visible: root.workspace.clockJump.length > 0
        onTriggered: root.workspace.dismissClockJump()
    }
}
