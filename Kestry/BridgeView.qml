import QtQuick
import Kestry

/// The strip: one button that opens the application, and shows the time of the session.
Item {
    id: root

    required property SessionBridge session
    required property NotchSurface surface

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: "Open Kestry"
    Accessible.onPressAction: root.surface.openApp()
    Keys.onReturnPressed: root.surface.openApp()
    Keys.onSpacePressed: root.surface.openApp()

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
                anchors.fill: parent
                radius: parent.radius
                color: Theme.line
                opacity: Theme.highlightOpacity
                visible: pressArea.pressed
            }
        }
    }

    ActionGlyph {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.stripSideWidth
        scale: pressArea.pressed && !root.surface.reducesMotion ? 0.96 : 1
        session: root.session
        highlighted: root.surface.hovered || root.activeFocus
        reducesMotion: root.surface.reducesMotion
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        onClicked: root.surface.openApp()
    }
}
