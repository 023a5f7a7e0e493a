import QtQuick
import Kestry

/// The strip's state, or what pressing the strip does while it is highlighted. The two change
/// places by opacity and scale: a blur costs the processor more than these sizes show of it.
Item {
    id: root

    required property SessionBridge session
    required property bool highlighted
    required property bool reducesMotion

    implicitHeight: Theme.stripGlyphHeight

    GlyphLayer {
        objectName: "stateLayer"
        anchors.fill: parent
        isShown: !root.highlighted
        reducesMotion: root.reducesMotion

        Symbol {
            anchors.centerIn: parent
            width: Theme.symbolSize
            height: Theme.symbolSize
            name: "play.fill"
            color: Theme.dark.primaryText
            visible: !root.session.hasSession
        }

        MorphingText {
            objectName: "elapsed"
            anchors.centerIn: parent
            text: root.session.elapsed
            color: root.session.isRunning ? Theme.dark.primaryText : Theme.dark.pausedText
            font.pixelSize: Theme.stripFont
            font.weight: Font.Medium
            font.family: Theme.monospaced
            frameInterval: Theme.stripInterval
            reducesMotion: root.reducesMotion
            visible: root.session.hasSession
        }
    }

    GlyphLayer {
        objectName: "actionLayer"
        anchors.fill: parent
        isShown: root.highlighted
        reducesMotion: root.reducesMotion

        Symbol {
            anchors.centerIn: parent
            width: Theme.actionSymbolSize
            height: Theme.actionSymbolSize
            name: "arrow.up.right"
            color: Theme.dark.primaryText
        }
    }
}
