import QtQuick
import KestryItems

/// One of several things that take the same place in turn.
Item {
    id: root

    required property bool isShown
    required property bool reducesMotion

    opacity: isShown ? 1 : 0
    scale: isShown || reducesMotion ? 1 : Theme.leavingScale

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.changeDuration
            easing.type: Easing.OutQuad
        }
    }

    Behavior on scale {
        enabled: !root.reducesMotion

        NumberAnimation {
            duration: Theme.changeDuration
            easing.type: Easing.OutQuad
        }
    }
}
