import QtQuick
import Kestry

/// Shows what the next session is for, and opens the choice.
Rectangle {
    id: root

    required property SessionBridge session
    required property bool isOpen
    readonly property string target: root.session.projectName.length > 0
        ? root.session.clientName + " · " + root.session.projectName : root.session.clientName

    signal triggered

    implicitHeight: Theme.controlHeight
    radius: Theme.controlRadius
    color: Qt.alpha(Theme.line, Theme.fieldOpacity)
    activeFocusOnTab: true
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: "Session client and project: " + root.target
    Accessible.onPressAction: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onSpacePressed: root.triggered()

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        color: Theme.line
        opacity: Theme.highlightOpacity
        visible: pressArea.containsMouse || root.activeFocus
    }

    Row {
        id: names
        readonly property real room: chevron.x - Theme.controlPadding - Theme.spacing

        x: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spacing

        Text {
            width: Math.min(implicitWidth, names.room)
            text: root.session.clientName
            color: Theme.primaryText
            font.pixelSize: Theme.bodyFont
            font.weight: Font.Medium
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        Text {
            width: Math.min(implicitWidth, Math.max(0, names.room - x))
            text: root.session.projectName
            color: Theme.secondaryText
            font.pixelSize: Theme.bodyFont
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }

    Symbol {
        id: chevron
        anchors.right: parent.right
        anchors.rightMargin: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.smallSymbolSize
        height: Theme.smallSymbolSize
        name: "chevron.down"
        color: Theme.secondaryText
        rotation: root.isOpen ? 180 : 0
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.triggered()
    }
}
