import QtQuick
import Kestry
import KestryItems

/// What has to be read before anything else, one after the other.
Item {
    id: root

    required property WorkspaceBridge workspace

    visible: root.workspace.alertTitle.length > 0

    Loader {
        anchors.fill: parent
        active: root.visible
        focus: active
        sourceComponent: AlertSheet {
            title: root.workspace.alertTitle
            message: root.workspace.alertMessage
            onDismissed: root.workspace.dismissAlert()
        }
    }
}
