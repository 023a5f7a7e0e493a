import QtQuick
import Kestry
import KestryItems

/// The strip: one button that opens the application, and shows the time of the session.
Pressable {
    id: root

    required property SessionBridge session
    required property NotchSurface surface

    label: "Open Kestry"
    tip: label
    tipPlace: ToolTips.BesideItem
    ringColors: Theme.dark
    ringDistance: -Theme.ringWidth
    onTriggered: root.surface.openApp()

    Item {
        anchors.fill: parent
        clip: root.surface.isFlush

        Rectangle {
            // A strip that touches the edge of the screen is round at its lower corners only.
            y: root.surface.isFlush ? -radius : 0
            width: parent.width
            height: parent.height - y
            radius: root.surface.bridgeRadius
            color: Theme.strip

            Rectangle {
                objectName: "overlay"
                anchors.fill: parent
                radius: parent.radius
                color: Theme.dark.highlight
                visible: root.isPressed
            }
        }
    }

    NotchActionGlyph {
        objectName: "glyph"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.stripSideWidth
        scale: root.isPressed && !root.surface.reducesMotion ? Theme.pressedScale : 1
        session: root.session
        highlighted: root.isHighlighted
        reducesMotion: root.surface.reducesMotion

        Behavior on scale {
            enabled: !root.surface.reducesMotion

            NumberAnimation {
                duration: Theme.pressDuration
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Theme.springCurve
            }
        }
    }
}
