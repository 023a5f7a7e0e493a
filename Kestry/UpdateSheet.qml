import QtQuick
import Kestry
import KestryItems

/// An update that is under way, over the window, in a view of its own each time. It waits while
/// something else is asked.
FocusScope {
    id: root

    required property SoftwareUpdateBridge updates
    required property bool mayShow

    visible: root.updates.isOpen && root.mayShow
    focus: visible

    ViewLoader {
        anchors.fill: parent
        isWanted: root.visible
        focus: true
        view: Qt.resolvedUrl("UpdateView.qml")
        properties: ({"updates": root.updates})
    }
}
