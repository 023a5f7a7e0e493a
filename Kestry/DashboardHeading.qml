import QtQuick
import Kestry
import KestryItems

/// Whose dashboard this is.
Item {
    id: root

    required property ClientDashboardBridge dashboard

    implicitHeight: Math.max(avatar.height, words.implicitHeight)

    ClientAvatar {
        id: avatar
        anchors.verticalCenter: parent.verticalCenter
        size: Theme.dashboardAvatar
        name: root.dashboard.name
        logo: root.dashboard.logo
    }

    Column {
        id: words
        anchors.left: avatar.right
        anchors.leftMargin: Theme.rowAvatarGap
        anchors.right: edit.left
        anchors.rightMargin: Theme.sectionSpacing
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.tightSpacing

        Text {
            width: parent.width
            text: root.dashboard.name
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.pageTitleFont
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        Text {
            width: parent.width
            text: root.dashboard.subtitle
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.timerFont
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    QuietButtonStyle {
        id: edit
        anchors.right: parent.right
        y: words.y + Theme.titleLineMiddle - height / 2 // in line with the main menu beside it
        label: "Edit client"
        onTriggered: root.dashboard.editClient()
    }
}
