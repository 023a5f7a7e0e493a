pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// Replication: its switch, how it stands, and what it asks the user.
SettingsSection {
    id: root

    required property CloudSyncBridge cloud

    title: "Connections"

    SettingsSwitch {
        symbol: "icloud"
        title: "iCloud sync"
        detail: root.cloud.status
        isOn: root.cloud.isOn
        enabled: root.cloud.canSwitch
        onToggled: root.cloud.toggle()
    }

    Item {
        width: root.width
        height: button.height + Theme.settingsInset
        visible: root.cloud.isOn

        QuietButtonStyle {
            id: button
            x: Theme.settingsTextInset
            symbol: root.cloud.isSyncing ? "progress.indicator" : "arrow.clockwise"
            label: root.cloud.isSyncing ? "Syncing…" : "Sync now"
            onTriggered: root.cloud.syncNow()

            NumberAnimation on symbolTurn {
                from: 0
                to: 360
                duration: Theme.turnDuration
                loops: Animation.Infinite
                running: root.cloud.isSyncing && !Theme.reducesMotion
                onStopped: button.symbolTurn = 0
            }
        }
    }

    SettingsRow {
        symbol: "externaldrive"
        title: "Record store"
        detail: root.cloud.account
        visible: root.cloud.canSignIn

        QuietButtonStyle {
            label: "Sign out"
            visible: root.cloud.isSignedIn
            onTriggered: {
                signing.forceActiveFocus();
                root.cloud.signOut();
            }
        }

        QuietButtonStyle {
            id: signing
            label: "Sign in…"
            onTriggered: root.cloud.signIn.open()
        }
    }

    CloudSyncFailure {
        x: Theme.settingsInset
        width: root.width - 2 * Theme.settingsInset
        message: root.cloud.failure
    }

    Item {
        width: root.width
        height: upload.height + Theme.settingsInset
        visible: root.cloud.offersUpload

        QuietButtonStyle {
            id: upload
            x: Theme.settingsTextInset
            symbol: "square.and.arrow.up"
            label: "Upload this device’s records again"
            enabled: !root.cloud.isSyncing
            onTriggered: {
                signing.forceActiveFocus(); // this button goes once it is done
                root.cloud.uploadAgain();
            }
        }
    }

    Disclosure {
        id: details
        width: root.width
        title: "Sync details"
        visible: root.cloud.hasDetails

        Repeater {
            model: root.cloud.sessions
            delegate: RemoteSessionRow {
                required property var modelData
                width: parent.width
                title: modelData.title
                detail: modelData.detail
            }
        }

        Repeater {
            model: root.cloud.conflicts
            delegate: SyncConflictPanel {
                required property var modelData
                width: parent.width
                summary: modelData.summary
                fields: modelData.fields
                onLocalKept: root.decide(() => root.cloud.keepLocal(modelData.id))
                onCloudUsed: root.decide(() => root.cloud.useCloud(modelData.id))
            }
        }

        Text {
            width: parent.width
            bottomPadding: Theme.settingsInset
            text: "No sessions on other devices, and nothing to review."
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            wrapMode: Text.Wrap
            visible: root.cloud.sessions.length + root.cloud.conflicts.length === 0
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    FormNote {
        x: Theme.settingsInset
        width: root.width - 2 * Theme.settingsInset
        topPadding: Theme.settingsRowPadding
        bottomPadding: Theme.settingsInset
        text: root.cloud.note
    }

    /// The panel goes with its conflict, and the keyboard must not go with it.
    function decide(carryOut: var): void {
        details.focusHeader();
        carryOut();
    }
}
