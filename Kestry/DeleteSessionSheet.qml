import QtQuick
import Kestry

/// Asks before a session is deleted, in a view of its own each time.
FocusScope {
    id: root

    required property SessionDeletion deletion

    visible: root.deletion.isAsking
    focus: visible && enabled // again, once what lay over it has gone

    Loader {
        anchors.fill: parent
        active: root.visible
        focus: true
        sourceComponent: DeleteQuestion {
            onConfirmed: root.deletion.confirm()
            onCancelled: root.deletion.cancel()
        }
        onLoaded: item.forceActiveFocus()
    }
}
