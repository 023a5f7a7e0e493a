import QtQuick
import Kestry
import KestryItems

/// Lets its content come out from behind the strip and go back there, as the surface says.
Item {
    id: root

    required property NotchSurface surface
    default property alias content: holder.data
    /// How far it has come out, from 0 to 1.
    property real reveal: 0

    function applyReveal(): void {
        unfolding.stop();
        folding.stop();
        if (root.surface.motion === NotchSurface.Unfold) {
            unfolding.start();
        } else if (root.surface.motion === NotchSurface.Fold) {
            folding.start();
        } else {
            root.reveal = root.surface.shown ? 1 : 0;
        }
    }

    Item {
        id: holder
        objectName: "holder"
        y: -(1 - root.reveal) * root.height
        width: root.width
        height: root.height
        opacity: root.reveal
    }

    NumberAnimation {
        id: unfolding
        target: root
        property: "reveal"
        to: 1
        duration: Theme.unfoldDuration
        easing.type: Easing.BezierSpline
        easing.bezierCurve: Theme.springCurve
    }

    NumberAnimation {
        id: folding
        target: root
        property: "reveal"
        to: 0
        duration: Theme.foldDuration
        easing.type: Easing.OutQuad
    }

    Connections {
        target: root.surface
        function onShownChanged(): void {
            ToolTips.hide();
            root.applyReveal();
        }
    }
}
