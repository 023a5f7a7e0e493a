import QtQuick
import Kestry
import KestryItems

/// Signs in to a record store, in a view of its own each time.
FocusScope {
    id: root

    required property SignInForm form

    visible: root.form.isOpen
    focus: visible && enabled // again, once what lay over it has gone

    ViewLoader {
        anchors.fill: parent
        isWanted: root.visible
        focus: true
        view: Qt.resolvedUrl("SignInView.qml")
        properties: ({"form": root.form})
    }
}
