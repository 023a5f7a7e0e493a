import QtQuick
import KestryItems

/// The theme and the accent.
SettingsSection {
    id: root

    required property AppearanceForm form

    function closeEditor(): void {
        root.form.closeEditor();
        swatches.focusCustom();
    }

    title: "Appearance"

    SettingsRow {
        symbol: "circle.lefthalf.filled"
        title: "Theme"

        SegmentedChoice {
            label: "Appearance theme"
            options: root.form.modes
            current: root.form.mode
            onChosen: index => root.form.chooseMode(index)
        }
    }

    SettingsRow {
        symbol: "paintpalette"
        title: "Accent color"

        AccentSwatches {
            id: swatches
            form: root.form
        }
    }

    // Made when it is asked for.
    ViewLoader {
        id: editor
        x: Theme.settingsTextInset
        width: parent.width - x - Theme.settingsInset
        height: (item as AccentEditor)?.implicitHeight ?? 0
        isWanted: root.form.isEditing
        view: Qt.resolvedUrl("AccentEditor.qml")
        properties: ({"form": root.form})
        onLoaded: (item as AccentEditor).begin()
    }

    Connections {
        target: editor.item
        function onClosed(): void { root.closeEditor(); }
    }

    FormNote {
        x: Theme.settingsTextInset
        width: parent.width - x - Theme.settingsInset
        topPadding: Theme.settingsRowPadding
        bottomPadding: Theme.settingsInset
        text: "Changes apply instantly."
    }
}
