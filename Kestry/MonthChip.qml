import QtQuick
import KestryItems

/// The month that limits a list, and the way out of it.
Rectangle {
    id: root

    required property string month

    signal cleared

    implicitWidth: content.implicitWidth + Theme.controlPadding
    implicitHeight: Theme.controlHeight
    radius: height / 2
    color: Theme.workspace.field

    Row {
        id: content
        x: Theme.controlPadding
        height: parent.height
        spacing: Theme.spacing

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.timerFont
            height: Theme.timerFont
            name: "calendar"
            color: Theme.workspace.secondaryText
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.month
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            Accessible.name: text
            Accessible.role: Accessible.StaticText
        }

        Pressable {
            id: clearButton
            width: Theme.controlHeight
            height: parent.height
            label: "Clear month filter"
            tip: label
            tipColors: Theme.workspace
            onTriggered: root.cleared()

            Symbol {
                anchors.centerIn: parent
                width: Theme.sidebarSymbolSize
                height: Theme.sidebarSymbolSize
                name: "xmark.circle.fill"
                color: clearButton.isHighlighted ? Theme.workspace.primaryText : Theme.workspace.secondaryText
            }
        }
    }
}
