import QtQuick
import KestryItems

/// Where a picker of colours stands. It can be seen on any colour.
Rectangle {
    id: root

    width: Theme.colorHandleSize
    height: Theme.colorHandleSize
    radius: width / 2
    border.width: Theme.ringWidth
    border.color: Theme.white

    Rectangle {
        anchors.fill: parent
        anchors.margins: -1
        radius: width / 2
        color: "transparent"
        border.color: Theme.black
    }
}
