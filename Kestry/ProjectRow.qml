import QtQuick
import KestryItems

/// A project of a client, with a button that starts a session on it and one that opens its form.
Item {
    id: root

    required property string name
    required property string count
    required property string rate
    /// All of it in one line.
    required property string spoken

    signal started
    signal edited
    /// The person goes so many rows down from one of the buttons.
    signal moved(int step, bool isEditing)

    function takeKeyboard(isEditing: bool): void {
        (isEditing ? edit : start).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: Math.max(Theme.rowHeight, words.height + 2 * Theme.tightSpacing)
    Accessible.role: Accessible.ListItem
    Accessible.name: root.spoken

    Item {
        id: mark
        width: Theme.projectMarkWidth
        height: parent.height

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.projectSymbolSize
            height: Theme.projectSymbolSize
            name: "folder"
            color: Theme.workspace.secondaryText
        }
    }

    Column {
        id: words
        anchors.left: mark.right
        anchors.right: price.left
        anchors.rightMargin: Theme.columnGap
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.rowTextSpacing

        Text {
            width: parent.width
            text: root.name
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.rowFont
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            Accessible.ignored: true
        }

        Text {
            width: parent.width
            text: root.count
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            // Beside a long rate it takes another line.
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }

    MorphingText {
        id: price
        anchors.right: start.left
        anchors.rightMargin: Theme.columnGap
        anchors.verticalCenter: parent.verticalCenter
        text: root.rate
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.timerFont
        reducesMotion: true
    }

    IconButton {
        id: start
        anchors.right: edit.left
        anchors.verticalCenter: parent.verticalCenter
        symbol: "play.fill"
        label: "Start " + root.name
        onTriggered: root.started()
        Keys.onDownPressed: root.moved(1, false)
        Keys.onUpPressed: root.moved(-1, false)
    }

    IconButton {
        id: edit
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        symbol: "pencil"
        label: "Edit " + root.name
        onTriggered: root.edited()
        Keys.onDownPressed: root.moved(1, true)
        Keys.onUpPressed: root.moved(-1, true)
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 1
        color: Theme.workspace.outline
    }
}
