import QtQuick
import Kestry
import KestryItems

/// What has to be read now.
AlertSheet {
    id: root

    required property WorkspaceBridge workspace

    title: root.workspace.alertTitle
    message: root.workspace.alertMessage
    onDismissed: root.workspace.dismissAlert()
}
