pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// The projects of a client that has some, or may have.
Column {
    id: root

    required property ClientDashboardBridge dashboard

    spacing: Theme.spacing

    SectionHeading {
        width: parent.width
        title: "Projects"

        QuietButtonStyle {
            symbol: "plus"
            label: "Add project"
            onTriggered: root.dashboard.addProject()
        }
    }

    Text {
        width: parent.width
        text: "Project rates apply to new sessions. Saved sessions keep their original rate."
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Text {
        width: parent.width
        topPadding: Theme.emptySectionPadding
        bottomPadding: Theme.emptySectionPadding
        text: root.dashboard.noProjects
        textFormat: Text.PlainText
        color: Theme.workspace.primaryText
        font.pixelSize: Theme.rowFont
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        visible: text.length > 0
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Column {
        width: parent.width
        visible: rows.count > 0
        Accessible.role: Accessible.List
        Accessible.name: "Projects"

        Repeater {
            id: rows
            model: root.dashboard.projects

            ProjectRow {
                required property int index
                required property string recordID

                width: root.width
                onStarted: root.dashboard.start(recordID)
                onEdited: root.dashboard.editProject(recordID)
                onMoved: (step, isEditing) => {
                    const next = rows.itemAt(index + step) as ProjectRow;
                    if (next) {
                        next.takeKeyboard(isEditing);
                    }
                }
            }
        }
    }
}
