import QtQuick
import Kestry
import KestryItems

/// The session in progress: its title and controls, and what it and the month have earned.
Column {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    required property var menus

    spacing: Theme.spacing

    Item {
        width: root.width
        height: Theme.controlHeight

        SessionTitle {
            objectName: "title"
            anchors.left: parent.left
            anchors.right: controls.left
            anchors.rightMargin: Theme.spacing
            height: parent.height
            session: root.session
            surface: root.surface
            menus: root.menus
        }

        SessionControls {
            id: controls
            anchors.right: parent.right
            session: root.session
            reducesMotion: root.surface.reducesMotion
        }
    }

    Row {
        id: facts
        readonly property real columnWidth: (width - spacing) / 2

        width: root.width
        spacing: Theme.factColumnSpacing

        FactLabel {
            objectName: "sessionFact"
            width: facts.columnWidth
            caption: "Session"
            value: root.session.sessionValue
            reducesMotion: root.surface.reducesMotion
        }

        FactLabel {
            objectName: "monthFact"
            width: facts.columnWidth
            caption: "This month"
            value: root.session.monthValue
            tip: root.session.monthExplanation
            reducesMotion: root.surface.reducesMotion
        }
    }
}
