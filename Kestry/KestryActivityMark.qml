import QtQuick
import Kestry
import KestryItems

/// The mark, turning with the time of the session: it stands where a pause left it.
KestryMark {
    id: root

    required property SessionBridge session
    property bool reducesMotion: Theme.reducesMotion
    readonly property bool isTurning: root.session.isRunning && !root.reducesMotion && root.visible
        && root.Window.visibility !== Window.Hidden

    function turn(): void {
        root.angle = root.reducesMotion ? 0 : root.session.activityAngle();
    }

    size: Theme.markSize
    color: Theme.workspace.primaryText
    onReducesMotionChanged: turn()
    Component.onCompleted: turn()
    Accessible.ignored: true

    Timer {
        interval: Theme.markInterval
        repeat: true
        running: root.isTurning
        onTriggered: root.turn()
    }

    Connections {
        target: root.session
        function onChanged(): void {
            root.turn();
        }
    }
}
