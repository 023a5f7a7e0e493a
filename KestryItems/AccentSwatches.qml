pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// The presets of the accent, and the way to one of the user's own.
Row {
    id: root

    required property AppearanceForm form

    function focusCustom(): void {
        custom.forceActiveFocus();
    }

    /// The one at a place, or the one of the user's own after them.
    function focusAt(index: int): void {
        if (index < swatches.count) {
            swatches.itemAt(Math.max(0, index)).forceActiveFocus();
        } else {
            root.focusCustom();
        }
    }

    spacing: Theme.controlRadius
    Accessible.role: Accessible.Grouping
    Accessible.name: "Accent color"

    Repeater {
        id: swatches
        model: root.form.presets
        delegate: ColorSwatch {
            id: swatch
            required property int index
            required property var modelData
            readonly property bool isChosen: index === root.form.preset

            label: modelData.name + " accent"
            fill: modelData.color
            mark: modelData.mark
            symbol: isChosen ? "checkmark" : ""
            Accessible.role: Accessible.RadioButton
            Accessible.checkable: true
            Accessible.checked: isChosen
            Keys.onLeftPressed: root.focusAt(index - 1)
            Keys.onRightPressed: root.focusAt(index + 1)
            onTriggered: root.form.choosePreset(index)
        }
    }

    ColorSwatch {
        id: custom
        readonly property bool isChosen: root.form.preset < 0

        label: "Custom accent color"
        tip: "Custom"
        fill: isChosen ? root.form.accent : Theme.workspace.surface
        mark: isChosen ? root.form.onAccent : Theme.workspace.primaryText
        symbol: "slider.horizontal.3"
        Accessible.checkable: true
        Accessible.checked: isChosen
        Accessible.description: root.form.isEditing ? "Open" : "Closed"
        Keys.onLeftPressed: root.focusAt(swatches.count - 1)
        onTriggered: root.form.isEditing ? root.form.closeEditor() : root.form.openEditor()
    }
}
