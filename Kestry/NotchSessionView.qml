import QtQuick
import Kestry
import KestryItems

/// The panel below the strip: what can be started, or the session in progress.
Item {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    /// The native menus, which open beside an item.
    required property var menus
    readonly property real wantedHeight: session.panelHeight
    readonly property bool isAnimated: surface.shown && !surface.reducesMotion
    /// Of the panel as it is drawn, on its way to the height that it wants.
    property real drawnHeight: wantedHeight

    onWantedHeightChanged: root.surface.resize(wantedHeight)

    Behavior on drawnHeight {
        enabled: root.isAnimated

        NumberAnimation {
            duration: Theme.changeDuration
            easing.type: Easing.OutQuad
        }
    }

    NotchRevealView {
        anchors.fill: parent
        surface: root.surface

        RoundedShape {
            objectName: "panel"
            width: root.width
            height: root.drawnHeight
            radius: root.surface.detailRadius
            color: root.surface.isComposited ? Theme.panel : Theme.dark.background
            outline: Theme.dark.outline
        }

        PanelRows {
            x: Theme.panelPadding
            y: Theme.panelPadding
            width: root.width - 2 * Theme.panelPadding
            session: root.session
            surface: root.surface
            menus: root.menus
            isAnimated: root.isAnimated
        }
    }
}
