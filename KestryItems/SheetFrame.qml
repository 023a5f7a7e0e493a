import QtQuick
import KestryItems

/// The raised surface that a sheet or an alert stands on.
Rectangle {
    id: root

    required property real contentHeight
    readonly property real contentWidth: width - 2 * Theme.sheetPadding
    default property alias content: inside.data

    height: contentHeight + 2 * Theme.sheetPadding
    radius: Theme.sheetRadius
    color: Theme.workspace.raisedSurface
    border.color: Theme.workspace.outline

    Item {
        id: inside
        anchors.fill: parent
        anchors.margins: Theme.sheetPadding
    }
}
