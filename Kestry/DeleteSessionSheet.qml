import QtQuick
import Kestry

/// Asks before a session of a list is deleted, in a view of its own each time.
FocusScope {
    id: root

    required property SessionsBridge sessions

    visible: root.sessions.isAskingToDelete
    focus: visible && enabled // again, once what lay over it has gone

    Loader {
        anchors.fill: parent
        active: root.visible
        focus: true
        sourceComponent: DeleteQuestion {
            onConfirmed: root.sessions.confirmDelete()
            onCancelled: root.sessions.cancelDelete()
        }
        onLoaded: item.forceActiveFocus()
    }
}
