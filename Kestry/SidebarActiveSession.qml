import QtQuick
import Kestry
import KestryItems

/// The session in progress: whose it is, its title, its time and value, and what can be done.
Column {
    id: root

    required property SidebarSession box
    required property SessionBridge session
    /// Whether anybody can see it; otherwise nothing here follows the time.
    readonly property bool isOnScreen: visible && Window.visibility !== Window.Hidden
        && Window.visibility !== Window.Minimized
    property string elapsed
    property string value

    function takeFocus(): void {
        pause.forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: Theme.boxSpacing

    Binding on elapsed {
        when: root.isOnScreen
        restoreMode: Binding.RestoreNone
        value: root.session.elapsed
    }

    Binding on value {
        when: root.isOnScreen
        restoreMode: Binding.RestoreNone
        value: root.box.value
    }

    Pressable {
        id: target
        objectName: "line"
        width: root.width
        implicitHeight: Math.ceil(line.implicitHeight) + Theme.spacing
        label: "Session client and project: " + root.box.line
        tip: line.truncated ? "Edit session and project\n" + root.box.line : "Edit session and project"
        tipColors: Theme.workspace
        Accessible.description: "Edit session and project"
        onTriggered: root.box.edit()

        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: -Theme.spacing
            anchors.rightMargin: -Theme.spacing
            radius: Theme.controlRadius
            color: Theme.workspace.highlight
            visible: target.isHighlighted
        }

        Text {
            id: line
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            text: root.box.line
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            font.weight: Font.Medium
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            Accessible.ignored: true
        }
    }

    SidebarTitleField {
        width: root.width
        box: root.box
        session: root.session
    }

    Column {
        width: root.width

        Item {
            width: parent.width
            height: time.implicitHeight
            Accessible.role: Accessible.StaticText
            Accessible.name: "Elapsed"
            Accessible.description: root.isOnScreen ? root.session.spokenElapsed : ""

            MorphingText {
                id: time
                objectName: "elapsed"
                text: root.elapsed
                color: root.session.isRunning ? Theme.workspace.primaryText : Theme.workspace.pausedText
                font.pixelSize: Theme.elapsedFont
                font.weight: Font.Medium
                frameInterval: Theme.tickInterval
                reducesMotion: Theme.reducesMotion
            }
        }

        Text {
            objectName: "value"
            width: parent.width
            text: root.value
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.smallFont
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    Item {
        width: root.width
        height: pause.implicitHeight

        PrimaryButtonStyle {
            id: pause
            objectName: "pause"
            anchors.left: parent.left
            anchors.right: stop.left
            anchors.rightMargin: Theme.boxSpacing
            symbol: root.session.isRunning ? "pause.fill" : "play.fill"
            label: root.session.isRunning ? "Pause" : "Resume"
            onTriggered: root.session.pauseOrResume()
        }

        IconButton {
            id: stop
            objectName: "stop"
            anchors.right: parent.right
            fill: Theme.workspace.field
            symbol: "stop.fill"
            label: "Stop and save session"
            onTriggered: root.session.stop()
        }
    }
}
