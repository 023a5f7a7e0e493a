import QtQuick
import KestryItems

/// What is read by those who ask for it: a heading that opens what stands below it.
Column {
    id: root

    required property string title
    property bool isOpen: false
    /// It is open, and what opens it was used last.
    readonly property bool isBeingRead: isOpen && header.activeFocus
    default property alias content: body.data

    function focusHeader(): void {
        header.forceActiveFocus();
    }

    Pressable {
        id: header
        width: parent.width
        height: Theme.settingsRowHeight
        ringDistance: -Theme.ringWidth
        label: root.title
        Accessible.description: root.isOpen ? "Open" : "Closed"
        onTriggered: {
            header.forceActiveFocus();
            root.isOpen = !root.isOpen;
        }

        Symbol {
            x: Theme.settingsInset + (Theme.settingsSymbolSize - width) / 2
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.symbolSize
            height: Theme.symbolSize
            name: root.isOpen ? "chevron.down" : "chevron.right"
            color: Theme.workspace.secondaryText
        }

        Text {
            anchors.left: parent.left
            anchors.leftMargin: Theme.settingsTextInset
            anchors.right: parent.right
            anchors.rightMargin: Theme.settingsInset
            anchors.verticalCenter: parent.verticalCenter
            text: root.title
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.rowFont
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }

    Column {
        id: body
        x: Theme.settingsTextInset
        width: parent.width - x - Theme.settingsInset
        visible: root.isOpen
    }
}
