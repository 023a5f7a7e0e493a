import QtQuick
import Kestry

/// The strip's state, or what pressing the strip does while it is highlighted.
Item {
    id: root

    required property SessionBridge session
    required property bool highlighted
    required property bool reducesMotion

    implicitHeight: Theme.stripGlyphHeight

    Item {
        id: stateLayer

        anchors.fill: parent
        opacity: root.highlighted ? 0 : 1
        scale: root.highlighted && !root.reducesMotion ? 0.25 : 1

        Behavior on opacity { NumberAnimation { duration: Theme.changeDuration; easing.type: Easing.OutQuad } }
        Behavior on scale { NumberAnimation { duration: Theme.changeDuration; easing.type: Easing.OutQuad } }

        Symbol {
            anchors.centerIn: parent
            width: Theme.symbolSize
            height: Theme.symbolSize
            name: "play.fill"
            color: Theme.primaryText
            visible: !root.session.hasSession
        }

        DigitText {
            anchors.centerIn: parent
            text: root.session.elapsed
            color: root.session.isRunning ? Theme.primaryText : Theme.pausedText
            font.pixelSize: Theme.stripFont
            font.weight: Font.Medium
            visible: root.session.hasSession
        }
    }

    Symbol {
        anchors.centerIn: parent
        width: Theme.actionSymbolSize
        height: Theme.actionSymbolSize
        name: "arrow.up.right"
        color: Theme.primaryText
        opacity: root.highlighted ? 1 : 0
        scale: root.highlighted || root.reducesMotion ? 1 : 0.25

        Behavior on opacity { NumberAnimation { duration: Theme.changeDuration; easing.type: Easing.OutQuad } }
        Behavior on scale { NumberAnimation { duration: Theme.changeDuration; easing.type: Easing.OutQuad } }
    }
}
