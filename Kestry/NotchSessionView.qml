import QtQuick
import Kestry

/// The panel below the strip. It unfolds from behind the strip and folds back.
Item {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    /// What the standing rows need, with what is unfolded in them on top.
    readonly property real wantedHeight: root.session.baseHeight + rows.unfoldedHeight
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

    clip: true
    onWantedHeightChanged: root.surface.resize(wantedHeight)

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
            root.applyReveal();
        }
    }

    Rectangle {
        y: -(1 - root.reveal) * root.height
        width: root.width
        height: root.height
        opacity: root.reveal
        radius: root.surface.detailRadius
        color: Qt.alpha(Theme.background, root.surface.isComposited ? Theme.panelOpacity : 1)
        border.color: Qt.alpha(Theme.line, Theme.outlineOpacity)

        Column {
            id: rows

            readonly property real unfoldedHeight: implicitHeight + 2 * y - root.session.baseHeight

            x: Theme.panelPadding
            y: root.session.hasSession ? Theme.sessionRowsPadding : Theme.panelPadding
            width: parent.width - 2 * x

            IdlePanel {
                width: rows.width
                session: root.session
                surface: root.surface
                visible: !root.session.hasSession
            }

            SessionPanel {
                width: rows.width
                session: root.session
                surface: root.surface
                visible: root.session.hasSession
            }

            RecoveryNotice {
                width: rows.width
                visible: root.session.isRecovered
                onDismissed: root.session.dismissRecovery()
            }

            MessageRow {
                width: rows.width
                message: root.session.message
                visible: message.length > 0
            }
        }
    }
}
