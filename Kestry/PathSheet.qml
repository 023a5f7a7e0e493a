import QtQuick
import Kestry

/// Asks for the path of a file, in a view of its own each time.
FocusScope {
    id: root

    required property PathForm chooser

    visible: root.chooser.isOpen
    focus: visible && enabled // again, once what lay over it has gone

    Loader {
        anchors.fill: parent
        active: root.visible
        focus: true
        sourceComponent: PathQuestion {
            chooser: root.chooser
        }
    }
}
