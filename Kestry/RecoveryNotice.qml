import QtQuick

/// Tells that a session was paused after a crash, until it is dismissed.
Item {
    id: root

    signal dismissed

    implicitHeight: Theme.noticeHeight

    Text {
        anchors.left: parent.left
        anchors.right: dismiss.left
        anchors.rightMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: Theme.spacing / 2
        text: "Your session was recovered and paused at its last saved checkpoint."
        color: Theme.attention
        font.pixelSize: Theme.captionFont
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Text {
        id: dismiss
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: Theme.spacing / 2
        text: "Dismiss"
        color: Theme.primaryText
        font.pixelSize: Theme.smallFont
        font.weight: Font.Medium
        font.underline: pressArea.containsMouse || activeFocus
        activeFocusOnTab: true
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.onPressAction: root.dismissed()
        Keys.onReturnPressed: root.dismissed()
        Keys.onSpacePressed: root.dismissed()

        MouseArea {
            id: pressArea
            anchors.fill: parent
            anchors.margins: -Theme.tightSpacing
            hoverEnabled: true
            onClicked: root.dismissed()
        }
    }
}
