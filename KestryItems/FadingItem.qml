import QtQuick
import KestryItems

/// Comes and goes by fading, and is not there at all once it has gone.
Item {
    id: root

    required property bool isShown
    required property bool isAnimated

    opacity: isShown ? 1 : 0
    visible: opacity > 0
    enabled: isShown

    Behavior on opacity {
        enabled: root.isAnimated

        NumberAnimation {
            duration: Theme.changeDuration
            easing.type: Easing.OutQuad
        }
    }
}
