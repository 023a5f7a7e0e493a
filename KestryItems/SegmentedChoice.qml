pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// One of a few words, side by side. The arrow keys choose.
Rectangle {
    id: root

    /// What is chosen, for those who listen.
    required property string label
    required property var options
    required property int current

    signal chosen(index: int)

    function choose(index: int): void {
        if (root.enabled && index >= 0 && index < root.options.length && index !== root.current) {
            root.chosen(index);
        }
    }

    /// The arrow key may lead beyond an end, where there is nothing.
    function step(by: int): void {
        const next = root.current + by;
        if (next >= 0 && next < root.options.length) {
            segments.itemAt(next).forceActiveFocus();
            root.choose(next);
        }
    }

    implicitWidth: row.width + 2 * Theme.capsuleInset
    implicitHeight: row.height + 2 * Theme.capsuleInset
    radius: Theme.controlRadius
    color: Theme.workspace.surface
    border.color: Theme.workspace.controlLine
    Accessible.role: Accessible.Grouping
    Accessible.name: root.label

    Row {
        id: row
        x: Theme.capsuleInset
        y: Theme.capsuleInset

        Repeater {
            id: segments
            model: root.options
            delegate: Pressable {
                id: segment
                required property int index
                required property string modelData
                readonly property bool isChosen: index === root.current

                implicitWidth: words.implicitWidth + 2 * Theme.buttonPadding
                implicitHeight: Theme.buttonHeight - 2 * Theme.capsuleInset
                label: modelData
                // What has the keyboard keeps its place in the order for as long.
                activeFocusOnTab: isChosen || activeFocus
                Accessible.role: Accessible.RadioButton
                Accessible.description: root.label
                Accessible.checkable: true
                Accessible.checked: isChosen
                Keys.onLeftPressed: root.step(-1)
                Keys.onRightPressed: root.step(1)
                onTriggered: root.choose(index)

                Rectangle {
                    anchors.fill: parent
                    radius: Theme.controlRadius - Theme.capsuleInset
                    color: segment.isChosen ? Theme.workspace.accent : Theme.workspace.highlight
                    visible: segment.isChosen || segment.isHighlighted
                }

                Text {
                    id: words
                    anchors.centerIn: parent
                    text: segment.modelData
                    textFormat: Text.PlainText
                    color: segment.isChosen ? Theme.workspace.accentText : Theme.workspace.primaryText
                    font.pixelSize: Theme.bodyFont
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
            }
        }
    }
}
