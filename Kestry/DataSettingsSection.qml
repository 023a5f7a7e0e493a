import QtQuick
import Kestry
import KestryItems

/// What can be done with the files of the ledger.
SettingsSection {
    id: root

    required property SettingsBridge settings
    required property SessionExport exporter

    title: "Data"

    SettingsRow {
        symbol: "square.and.arrow.up"
        title: "Export sessions"
        detail: root.settings.exportDetail

        QuietButtonStyle {
            label: "Export"
            enabled: !root.exporter.isWriting
            onTriggered: root.exporter.start()
        }
    }

    SettingsRow {
        symbol: "folder"
        title: "Workspace files"
        detail: "Local data and backups"

        QuietButtonStyle {
            label: "Open folder"
            onTriggered: root.settings.openFolder()
        }
    }

    SettingsRow {
        symbol: "arrow.counterclockwise"
        title: "Restore backup"
        detail: "A saved backup is available"
        visible: root.settings.canRestore

        QuietButtonStyle {
            label: "Restore…"
            onTriggered: root.settings.askToRestore()
        }
    }
}
