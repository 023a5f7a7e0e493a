pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

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

        // Made with a session only: a strip without one loads no font, and is there earlier.
        Repeater {
            objectName: "elapsed"
            model: root.session.hasSession ? 1 : 0

            MorphingText {
                anchors.centerIn: parent
                text: root.session.elapsed
                color: root.session.isRunning ? Theme.dark.primaryText : Theme.dark.pausedText
                font.pixelSize: Theme.stripFont
                font.weight: Font.Medium
                font.family: Theme.monospaced
                frameInterval: Theme.tickInterval
                reducesMotion: root.reducesMotion
            }
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
