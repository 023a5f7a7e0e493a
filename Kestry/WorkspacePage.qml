import QtQuick
import Kestry
import KestryItems

/// The page of a destination.
Item {
    id: root

    required property string destination
    required property SessionsBridge sessions
    required property SessionExport exporter
    readonly property bool isSessions: root.destination === "Sessions"

    Text {
        x: Theme.pageMargin
        y: Theme.pageMargin
        text: root.destination
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.pageTitleFont
        font.weight: Font.DemiBold
        visible: !root.isSessions
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Loader {
        anchors.fill: parent
        active: root.isSessions
        sourceComponent: SessionsView {
            sessions: root.sessions
            exporter: root.exporter
        }
    }
}
