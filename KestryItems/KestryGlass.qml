import QtQuick
import KestryItems

/// A translucent ground with round corners. What is behind it is not blurred: it is drawn by the
/// processor, where a blur costs more than it shows.
Item {
    id: root

    property real cornerRadius: Theme.controlRadius
    /// Answers the pointer.
    property bool interactive: false
    property color tint: "transparent"
    property ThemeColors colors: Theme.workspace
    property bool reducesTransparency: Theme.reducesTransparency

    RoundedShape {
        objectName: "material"
        anchors.fill: parent
        radius: root.cornerRadius
        color: root.reducesTransparency ? root.colors.surface
                                        : Qt.alpha(root.colors.raisedSurface, Theme.glassOpacity)
        outline: root.colors.outline
    }

    Rectangle {
        objectName: "tint"
        anchors.fill: parent
        radius: root.cornerRadius
        color: root.tint
        opacity: Theme.glassTintOpacity
        visible: !root.reducesTransparency && root.tint.a > 0
    }

    Rectangle {
        objectName: "highlight"
        anchors.fill: parent
        radius: root.cornerRadius
        color: root.colors.highlight
        visible: root.interactive && pointer.hovered
    }

    HoverHandler {
        id: pointer
        enabled: root.interactive
    }
}
