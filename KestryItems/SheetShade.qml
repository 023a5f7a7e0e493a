import QtQuick
import KestryItems

/// Dims the window under a sheet, and keeps the pointer from it.
Rectangle {
    color: Theme.shade
    opacity: Theme.shadeOpacity

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }
}
