import QtQuick
import KestryItems

/// One setting: a symbol, what it is, and at the right end what it is set by.
Item {
    id: root

    required property string symbol
    required property string title
    property string detail: ""
    /// The control at the right end says all that is written here.
    property bool isSpokenByControl: false
    default property alias control: controls.data
    readonly property real textRoom: width - Theme.settingsTextInset - controls.width
        - 2 * Theme.settingsInset
    /// Where the texts would have hardly any room the control stands below them.
    readonly property bool isStacked: textRoom < Theme.settingsLeastText

    width: parent?.width ?? 0
    implicitHeight: Math.max(Theme.settingsRowHeight, texts.height
        + (root.isStacked ? controls.height + Theme.settingsRowPadding
            : Math.max(0, controls.height - texts.height)) + 2 * Theme.settingsRowPadding)
    Accessible.role: Accessible.StaticText
    Accessible.name: root.detail.length > 0 ? root.title + ", " + root.detail : root.title
    Accessible.ignored: root.isSpokenByControl

    Rectangle {
        anchors.left: parent.left
        anchors.leftMargin: Theme.settingsTextInset
        anchors.right: parent.right
        height: 1
        color: Theme.workspace.outline
        visible: root.y > 0 // not above the first row
    }

    Symbol {
        x: Theme.settingsInset
        y: root.isStacked ? texts.y + Theme.captionRise : (root.height - height) / 2
        width: Theme.settingsSymbolSize
        height: Theme.settingsSymbolSize
        name: root.symbol
        color: Theme.workspace.secondaryText
    }

    Column {
        id: texts
        x: Theme.settingsTextInset
        y: root.isStacked ? Theme.settingsRowPadding : (root.height - height) / 2
        width: root.isStacked ? root.width - x - Theme.settingsInset : root.textRoom
        spacing: Theme.rowTextSpacing

        Text {
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            font.weight: Font.Medium
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        Text {
            width: parent.width
            text: root.detail
            textFormat: Text.PlainText
            color: Theme.workspace.secondaryText
            font.pixelSize: Theme.bodyFont
            wrapMode: Text.Wrap
            visible: text.length > 0
            Accessible.ignored: true
        }
    }

    Row {
        id: controls
        x: root.isStacked ? Theme.settingsTextInset : root.width - width - Theme.settingsInset
        y: root.isStacked ? root.height - height - Theme.settingsRowPadding
            : (root.height - height) / 2
        spacing: Theme.controlRadius
    }
}
