import QtQuick
import Kestry

/// Asks before a session is deleted, in a view of its own each time.
FocusScope {
    id: root

    required property SessionDeletion deletion

    visible: root.deletion.isAsking
    focus: visible && enabled // again, once what lay over it has gone

    Loader {
        id: question
        anchors.fill: parent
        active: root.visible
        focus: true
        source: "DeleteQuestion.qml"
        onLoaded: (item as DeleteQuestion).forceActiveFocus()
    }

    Connections {
        target: question.item
        function onConfirmed(): void { root.deletion.confirm(); }
        function onCancelled(): void { root.deletion.cancel(); }
    }
}
