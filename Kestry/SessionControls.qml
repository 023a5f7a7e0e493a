import QtQuick
import Kestry
import KestryItems

/// The time of the session, and what can be done with it.
Row {
    id: root

    required property SessionBridge session
    required property bool reducesMotion

    spacing: Theme.tightSpacing

    Item {
        width: elapsed.implicitWidth + Theme.tightSpacing
        height: Theme.controlHeight
        Accessible.role: Accessible.StaticText
        Accessible.name: "Elapsed time " + root.session.spokenElapsed

        MorphingText {
            id: elapsed
            objectName: "elapsed"
            anchors.verticalCenter: parent.verticalCenter
            text: root.session.elapsed
            color: root.session.isRunning ? Theme.dark.primaryText : Theme.dark.pausedText
            font.pixelSize: Theme.panelTimerFont
            font.weight: Font.Medium
            reducesMotion: root.reducesMotion
        }
    }

    IconCell {
        objectName: "pause"
        symbol: root.session.isRunning ? "pause.fill" : "play.fill"
        label: root.session.isRunning ? "Pause session" : "Resume session"
        color: root.session.isRunning ? Theme.dark.primaryText : Theme.panelAccent
        onTriggered: root.session.pauseOrResume()
    }

    IconCell {
        objectName: "stop"
        symbol: "stop.fill"
        label: "Stop and save session"
        onTriggered: root.session.stop()
    }
}
