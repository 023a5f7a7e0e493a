import QtQuick
import Kestry
import KestryItems

/// The rows of the panel: those of the session, or the one to start with, and what went wrong.
Column {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    required property var menus
    required property bool isAnimated

    spacing: Theme.spacing

    Item {
        width: root.width
        height: root.session.hasSession ? active.implicitHeight : idle.implicitHeight

        FadingItem {
            anchors.fill: parent
            isShown: !root.session.hasSession
            isAnimated: root.isAnimated

            IdleRow {
                id: idle
                objectName: "idleRow"
                width: parent.width
                session: root.session
                surface: root.surface
                menus: root.menus
            }
        }

        FadingItem {
            anchors.fill: parent
            isShown: root.session.hasSession
            isAnimated: root.isAnimated

            SessionRows {
                id: active
                objectName: "sessionRows"
                width: parent.width
                session: root.session
                surface: root.surface
                menus: root.menus
            }
        }
    }

    MessageRow {
        objectName: "messageRow"
        width: root.width
        message: root.session.message
        visible: message.length > 0
    }
}
