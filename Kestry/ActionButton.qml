import QtQuick
import Kestry

/// A filled button of one symbol and one or two words.
Rectangle {
    id: root

    required property string symbol
    required property string label
    /// The one thing to do here, rather than one of several.
    property bool isPrimary: true
    readonly property color contentColor: isPrimary ? Theme.accentText : Theme.primaryText

    signal triggered

    implicitWidth: content.implicitWidth + 2 * Theme.controlPadding
    implicitHeight: Theme.controlHeight
    radius: Theme.controlRadius
    color: root.isPrimary ? Theme.accent : Qt.alpha(Theme.line, Theme.fieldOpacity)
    opacity: pressArea.pressed ? Theme.pressedOpacity : 1
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.label
    Accessible.onPressAction: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onSpacePressed: root.triggered()

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        color: Theme.line
        opacity: 2 * Theme.highlightOpacity
        visible: pressArea.containsMouse || root.activeFocus
    }

    Row {
        id: content
        anchors.centerIn: parent
        spacing: Theme.spacing

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.smallSymbolSize
            height: Theme.smallSymbolSize
            name: root.symbol
            color: root.contentColor
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.label
            color: root.contentColor
            font.pixelSize: Theme.smallFont
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.triggered()
    }
}
