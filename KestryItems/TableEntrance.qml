import QtQuick
import KestryItems

/// Lets a table come in when what it shows has changed: bars stand where its rows will be until
/// the eye has followed to the new page, then the content fades up. A later change begins anew.
Item {
    id: root

    /// The identity of what is shown.
    required property string context
    property bool isEnabled: true
    property bool reducesMotion: Theme.reducesMotion
    property ThemeColors colors: Theme.workspace
    default property alias content: holder.data
    property bool revealed: false
    property real contentOpacity: 1
    readonly property bool drawsPlaceholder: moves && !revealed
    readonly property bool moves: isEnabled && !reducesMotion

    function enter(): void {
        entrance.stop();
        root.revealed = false;
        root.contentOpacity = Theme.placeholderOpacity;
        if (root.moves) {
            entrance.start();
        } else {
            root.settle();
        }
    }

    function settle(): void {
        root.revealed = true;
        root.contentOpacity = 1;
    }

    implicitWidth: holder.childrenRect.width
    implicitHeight: holder.childrenRect.height
    onContextChanged: enter()
    onMovesChanged: enter()
    Component.onCompleted: enter()

    SequentialAnimation {
        id: entrance

        PauseAnimation { duration: Theme.entranceDelay }
        PropertyAction { target: root; property: "revealed"; value: true }
        NumberAnimation {
            target: root
            property: "contentOpacity"
            to: 1
            duration: Theme.entranceDuration
            easing.type: Easing.OutQuad
        }
        ScriptAction { script: root.settle() }
    }

    Item {
        id: holder
        anchors.fill: parent
        visible: !root.drawsPlaceholder
        opacity: root.moves ? root.contentOpacity : 1
    }

    PlaceholderBars {
        anchors.fill: parent
        visible: root.drawsPlaceholder
        opacity: root.contentOpacity
        color: root.colors.secondaryText
    }
}
