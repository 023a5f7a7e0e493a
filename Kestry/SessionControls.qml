import QtQuick
import Kestry

/// The time of the session, and what can be done with it.
Row {
    id: root

    required property SessionBridge session

    spacing: Theme.tightSpacing

    Item {
        width: elapsed.implicitWidth + Theme.tightSpacing
        height: Theme.controlHeight
        Accessible.role: Accessible.StaticText
        Accessible.name: "Elapsed time " + root.session.spokenElapsed

        DigitText {
            id: elapsed
            anchors.verticalCenter: parent.verticalCenter
            text: root.session.elapsed
            color: root.session.isRunning ? Theme.primaryText : Theme.pausedText
            font.pixelSize: Theme.timerFont
            font.weight: Font.Medium
        }
    }

    IconCell {
        symbol: root.session.isRunning ? "pause.fill" : "play.fill"
        label: root.session.isRunning ? "Pause session" : "Resume session"
        color: root.session.isRunning ? Theme.primaryText : Theme.accent
        onTriggered: root.session.pauseOrResume()
    }

    IconCell {
        symbol: "stop.fill"
        label: "Stop and save session"
        onTriggered: root.session.stop()
    }
}
