import QtQuick
import Kestry
import KestryItems

/// How the program behaves: a list of sections below the page's title, beside which the main menu
/// stays.
Item {
    id: root

    required property SettingsBridge settings
    required property SessionExport exporter
    readonly property alias page: scroller

    Text {
        id: title
        x: Theme.pageMargin
        y: Theme.pageMargin
        text: "Settings"
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.pageTitleFont
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    ScrollingPage {
        id: scroller
        anchors.fill: parent
        anchors.topMargin: title.y + title.height + Theme.sectionSpacing
        contentHeight: sections.height + Theme.controlRadius + Theme.pageMargin
        // What is opened at the end of the page would stay below its edge.
        onFarthestChanged: if (notes.isBeingRead) reveal(notes)

        Column {
            id: sections
            x: Theme.pageMargin
            y: Theme.controlRadius
            width: Math.min(Theme.settingsMaximum, scroller.width - 2 * Theme.pageMargin)
            spacing: Theme.settingsSpacing

            AppearanceSettingsSection { width: parent.width; form: root.settings.appearance }
            CloudSyncSettings { width: parent.width; cloud: root.settings.cloud }
            WorkspaceSettingsSection { width: parent.width; settings: root.settings }
            SoftwareUpdateSettings { width: parent.width; updates: root.settings.updates }
            DesktopSettingsSection {
                width: parent.width
                choices: root.settings.desktop
                onKeysAsked: root.settings.isShowingKeys = true
            }
            DataSettingsSection { width: parent.width; settings: root.settings; exporter: root.exporter }
            TrackingNotes { id: notes; width: parent.width }

            Text {
                width: parent.width
                text: root.settings.versionLine
                textFormat: Text.PlainText
                color: Theme.workspace.secondaryText
                font.pixelSize: Theme.smallFont
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
