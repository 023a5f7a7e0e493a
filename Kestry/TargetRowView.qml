import QtQuick
import Kestry

/// One client or project to choose.
Item {
    id: root

    required property string name
    required property color dotColor
    required property bool isChosen

    signal triggered

    implicitHeight: Theme.rowHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.RadioButton
    Accessible.name: root.name
    Accessible.checkable: true
    Accessible.checked: root.isChosen
    Accessible.onPressAction: root.triggered()
    Accessible.onToggleAction: root.triggered()
    Keys.onReturnPressed: root.triggered()
    Keys.onSpacePressed: root.triggered()

    Rectangle {
        anchors.fill: parent
        radius: Theme.rowRadius
        color: Theme.line
        opacity: Theme.highlightOpacity
        visible: pressArea.containsMouse || root.activeFocus
    }

    Rectangle {
        id: dot
        anchors.left: parent.left
        anchors.leftMargin: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        width: root.dotColor.a > 0 ? Theme.dotSize : 0
        height: width
        radius: width / 2
        color: root.dotColor
    }

    Text {
        anchors.left: dot.right
        anchors.leftMargin: dot.width > 0 ? Theme.controlPadding - 2 : 0
        anchors.right: check.left
        anchors.rightMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        text: root.name
        color: root.isChosen ? Theme.primaryText : Theme.secondaryText
        font.pixelSize: Theme.bodyFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Symbol {
        id: check
        anchors.right: parent.right
        anchors.rightMargin: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.symbolSize
        height: Theme.symbolSize
        name: "checkmark"
        color: Theme.accent
        visible: root.isChosen
    }

    MouseArea {
        id: pressArea
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.triggered()
    }
}
