import QtQuick
import Kestry
import KestryItems

/// Asks for the path of a file, in a view of its own each time.
FocusScope {
    id: root

    required property PathForm chooser

    visible: root.chooser.isOpen
    focus: visible && enabled // again, once what lay over it has gone

    ViewLoader {
        anchors.fill: parent
        isWanted: root.visible
        focus: true
        view: Qt.resolvedUrl("PathQuestion.qml")
        properties: ({"chooser": root.chooser})
    }
}
