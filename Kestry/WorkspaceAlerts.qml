import QtQuick
import Kestry

/// What has to be read before anything else, one after the other.
Item {
    id: root

    required property WorkspaceBridge workspace
    readonly property bool hasAttention: root.workspace.attention.length > 0
    readonly property bool hasExport: root.workspace.exportMessage.length > 0

    visible: hasAttention || hasExport

    AlertSheet {
        anchors.fill: parent
        title: root.hasAttention ? "Your time needs attention" : "Export complete"
        message: root.hasAttention ? root.workspace.attention : root.workspace.exportMessage
        onDismissed: {
            if (root.hasAttention) {
                root.workspace.dismissAttention();
            } else {
                root.workspace.dismissExportMessage();
            }
        }
    }
}
