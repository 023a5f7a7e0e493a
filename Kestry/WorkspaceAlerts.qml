import QtQuick
import Kestry
import KestryItems

/// What has to be read before anything else, one after the other.
Item {
    id: root

    required property WorkspaceBridge workspace

    visible: root.workspace.alertTitle.length > 0

    ViewLoader {
        anchors.fill: parent
        isWanted: root.visible
        focus: isWanted
        view: Qt.resolvedUrl("WorkspaceAlert.qml")
        properties: ({"workspace": root.workspace})
    }
}
