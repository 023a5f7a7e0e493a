import QtQuick
import Kestry
import KestryItems

/// What the next session is for, and its start.
Column {
    id: root

    required property SidebarSession box
    required property SessionBridge session

    /// The choice of what the next session is for is wanted below an item.
    signal targetAsked(item: Item)

    function takeFocus(): void {
        start.forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: Theme.boxSpacing

    TargetField {
        objectName: "target"
        width: root.width
        box: root.box
        onAsked: item => root.targetAsked(item)
    }

    SidebarTitleField {
        width: root.width
        box: root.box
        session: root.session
    }

    PrimaryButtonStyle {
        id: start
        objectName: "start"
        width: root.width
        symbol: "play.fill"
        label: "Start session"
        onTriggered: root.session.start()
    }
}
