import QtQuick
import Kestry
import KestryItems

/// One day of the activity chart, in a column as high as the chart. It rises when it appears.
Item {
    id: root

    required property int index
    required property real barHeight
    /// An ActivityBars.Look.
    required property int look
    /// The day and its time.
    required property string label
    property bool revealed: Theme.reducesMotion
    /// A bar that goes away has no index any more.
    readonly property int delay: Math.max(0, root.index) * Theme.barDelay

    function showTip(): void {
        ToolTips.show(root, root.label, ToolTips.BesideItem, Theme.workspace);
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: root.label
    Accessible.focusable: true
    Component.onCompleted: revealed = true
    onActiveFocusChanged: {
        if (!activeFocus) {
            ToolTips.hide();
        } else if (KeyboardUse.isCurrent) {
            showTip();
        }
    }

    Rectangle {
        id: bar
        anchors.bottom: parent.bottom
        width: parent.width
        // On whole pixels, so that all stand on one line.
        height: root.revealed ? Math.round(root.barHeight) : 0
        radius: Theme.barRadius
        opacity: root.revealed ? 1 : 0
        color: root.look === ActivityBars.Later
               ? Qt.alpha(Theme.workspace.line, Theme.laterBarOpacity)
               : Qt.alpha(Theme.workspace.accent, root.look === ActivityBars.Today ? 1
                          : root.look === ActivityBars.Busy ? Theme.busyBarOpacity : Theme.idleBarOpacity)

        Behavior on height {
            enabled: !Theme.reducesMotion
            SequentialAnimation {
                PauseAnimation { duration: root.delay }
                NumberAnimation {
                    duration: Theme.riseDuration
                    easing.type: Easing.BezierSpline
                    easing.bezierCurve: Theme.springCurve
                }
            }
        }
        Behavior on opacity {
            enabled: !Theme.reducesMotion
            SequentialAnimation {
                PauseAnimation { duration: root.delay }
                NumberAnimation {
                    duration: Theme.riseDuration
                    easing.type: Easing.BezierSpline
                    easing.bezierCurve: Theme.springCurve
                }
            }
        }
    }

    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.NoButton
    }

    HoverTip {
        item: root
        text: root.label
        colors: Theme.workspace
        isPointedAt: area.containsMouse
    }

    FocusRing {
        item: root
        distance: Theme.barRingDistance
        itemRadius: Theme.barRadius
    }
}
