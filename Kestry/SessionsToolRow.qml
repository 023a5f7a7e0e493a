import QtQuick
import Kestry
import KestryItems

/// The search, how many sessions it finds, and what can be done with all of them.
Item {
    id: root

    required property SessionsBridge sessions
    required property SessionExport exporter
    readonly property bool isNarrow: width < Theme.leastToolsWidth

    /// The person goes on to the rows.
    signal exited

    function beginSearch(): void {
        search.forceActiveFocus();
    }

    implicitHeight: Theme.fieldHeight

    SearchField {
        id: search
        anchors.left: parent.left
        width: Math.max(Theme.searchMinimum, Math.min(Theme.searchMaximum,
            buttons.x - count.implicitWidth - 4 * Theme.spacing))
        label: "Search sessions"
        text: root.sessions.search
        onEdited: text => root.sessions.search = text
        onExited: root.exited()
    }

    Text {
        id: count
        anchors.left: search.right
        anchors.leftMargin: 2 * Theme.spacing
        anchors.right: buttons.left
        anchors.rightMargin: Theme.spacing
        height: parent.height
        text: root.sessions.countText
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    LiveMessage {
        message: root.sessions.countText
    }

    Row {
        id: buttons
        anchors.right: parent.right
        spacing: Theme.spacing

        QuietButtonStyle {
            symbol: root.isNarrow ? "" : "square.and.arrow.up"
            label: root.exporter.isWriting ? "Exporting…" : root.sessions.exportLabel
            tip: root.sessions.exportHelp
            tipColors: Theme.workspace
            enabled: !root.exporter.isWriting
            help: root.sessions.exportHelp
            onTriggered: root.exporter.start()
        }

        PrimaryButtonStyle {
            symbol: root.isNarrow ? "" : "plus"
            label: "Add time"
            onTriggered: root.sessions.addTime()
        }
    }
}
