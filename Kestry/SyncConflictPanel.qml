pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// Two versions of one record, and the choice between them.
Item {
    id: root

    required property string summary
    /// Each with `name`, `local`, `remote` and `differs`.
    required property var fields

    signal localKept
    signal cloudUsed

    implicitHeight: box.height + Theme.settingsInset

    Rectangle {
        id: box
        width: root.width
        height: content.height + 2 * Theme.settingsInset
        radius: Theme.boxRadius
        color: Theme.workspace.background // on which the buttons stand out
        border.color: Theme.workspace.outline
    }

    Column {
        id: content
        x: Theme.settingsInset
        y: Theme.settingsInset
        width: root.width - 2 * Theme.settingsInset
        spacing: Theme.fieldSpacing

        Row {
            width: parent.width
            spacing: Theme.spacing
            Accessible.role: Accessible.Heading
            Accessible.name: heading.text

            Symbol {
                id: sign
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.settingsSymbolSize
                height: Theme.settingsSymbolSize
                name: "arrow.triangle.branch"
                color: Theme.workspace.attention
            }

            Text {
                id: heading
                width: parent.width - sign.width - parent.spacing
                text: "Two versions need your review"
                textFormat: Text.PlainText
                color: Theme.workspace.primaryText
                font.pixelSize: Theme.timerFont
                font.weight: Font.Medium
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }

        Text {
            width: parent.width
            text: root.summary
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            lineHeight: 1.25
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        SyncComparisonTable {
            width: parent.width
            fields: root.fields
        }

        Flow {
            width: parent.width
            spacing: Theme.controlRadius

            QuietButtonStyle {
                label: "Keep this Mac’s version"
                onTriggered: root.localKept()
            }

            QuietButtonStyle {
                label: "Use iCloud version"
                onTriggered: root.cloudUsed()
            }
        }
    }
}
