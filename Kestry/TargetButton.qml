import QtQuick
import Kestry
import KestryItems

/// Shows what the next session is for, and opens the choice.
Pressable {
    id: root

    required property SessionBridge session

    label: session.targetLabel
    tip: names.isCut ? session.targetClient + "\n" + session.targetDetail : ""
    ringColors: Theme.dark
    ringDistance: 0
    implicitHeight: Theme.controlHeight
    Accessible.role: Accessible.ButtonMenu

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.dark.field
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.dark.highlight
        visible: root.isHighlighted
    }

    TwoTexts {
        id: names
        anchors.left: parent.left
        anchors.leftMargin: Theme.controlPadding
        anchors.right: chevron.left
        anchors.rightMargin: Theme.spacing
        height: parent.height
        first: root.session.targetClient
        second: root.session.targetDetail
    }

    Symbol {
        id: chevron
        anchors.right: parent.right
        anchors.rightMargin: Theme.controlPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.smallSymbolSize
        height: Theme.smallSymbolSize
        name: "chevron.down"
        color: Theme.panelSecondaryText
    }
}
