import QtQuick
import Kestry
import KestryItems

/// The session in progress, above the saved ones.
FocusScope {
    id: root

    required property activeRow session
    required property string elapsed
    required property string value
    /// Elapsed time and value in words.
    required property string spoken
    required property TableColumns table
    readonly property string help: "Edit session and project"

    signal triggered
    signal menuRequested(Item item)
    /// The person goes on to the rows below.
    signal exited

    implicitHeight: Theme.rowHeight

    SessionRowFrame {
        id: frame
        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        label: root.session.label
        detail: root.session.detail
        clientName: root.session.clientName
        clientLogo: root.session.clientLogo
        table: root.table
        hasRing: KeyboardUse.isCurrent && activeFocus
        onTriggered: root.triggered()
        onMenuRequested: item => root.menuRequested(item)
        Accessible.role: Accessible.ListItem
        Accessible.name: root.session.spoken
        Accessible.description: root.spoken + ". " + root.help
        Accessible.focusable: true
        Accessible.onPressAction: if (frame.enabled && frame.visible) root.triggered()
        Keys.onReturnPressed: root.triggered()
        Keys.onEnterPressed: root.triggered()
        Keys.onDownPressed: root.exited()
        Keys.onMenuPressed: root.menuRequested(frame)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
                event.accepted = true;
                root.menuRequested(frame);
            }
        }

        Rectangle {
            anchors.right: parent.right
            // At the left of a column of dates, and below the elapsed time without one.
            anchors.rightMargin: root.table.afterDate
                + (root.table.hasDateColumn ? root.table.date - width : 0)
            y: Math.round(frame.dateLine - height / 2)
            width: Math.ceil(state.implicitWidth) + 2 * Theme.capsulePadding
            height: Math.ceil(state.implicitHeight) + 2 * Theme.capsuleInset
            radius: height / 2
            color: Theme.workspace.accentTint

            Text {
                id: state
                anchors.centerIn: parent
                text: root.session.state
                textFormat: Text.PlainText
                color: Theme.workspace.accentOnTint
                font.pixelSize: Theme.captionFont
                font.weight: Font.Medium
                Accessible.ignored: true
            }
        }

        MorphingText {
            anchors.right: parent.right
            anchors.rightMargin: root.table.afterDuration
            y: Math.round(frame.figureLine - height / 2)
            text: root.elapsed
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            frameInterval: Theme.tickInterval
            reducesMotion: Theme.reducesMotion
        }

        Text {
            anchors.right: parent.right
            y: Math.round(frame.figureLine - height / 2)
            width: root.table.value
            text: root.value
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            // A long amount is smaller, as long as it can be read.
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: Theme.captionFont
            font.pixelSize: Theme.timerFont
            horizontalAlignment: Text.AlignRight
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        HoverTip {
            item: frame
            text: root.help
            colors: Theme.workspace
            isPointedAt: frame.isPointedAt
        }
    }
}
