import QtQuick
import KestryItems

/// A text, and a fainter one after it in what room is left. Each ends in an ellipsis if it is cut.
Item {
    id: root

    required property string first
    property string second: ""
    readonly property bool isFirstCut: firstText.truncated
    readonly property bool isCut: firstText.truncated || secondText.truncated
    /// Less than this shows nothing but an ellipsis.
    readonly property real roomForSecond: width - firstText.width - Theme.spacing

    implicitHeight: firstText.implicitHeight

    Text {
        id: firstText
        objectName: "first"
        width: Math.min(implicitWidth, root.width)
        height: root.height
        text: root.first
        textFormat: Text.PlainText
        maximumLineCount: 1
        color: Theme.dark.primaryText
        font.pixelSize: Theme.panelBodyFont
        font.weight: Font.Medium
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    Text {
        id: secondText
        objectName: "second"
        anchors.right: parent.right
        anchors.left: firstText.right
        anchors.leftMargin: Theme.spacing
        height: root.height
        text: root.second
        textFormat: Text.PlainText
        maximumLineCount: 1
        color: Theme.panelSecondaryText
        font.pixelSize: Theme.panelBodyFont
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        visible: root.second.length > 0 && root.roomForSecond > Theme.leastTextWidth
        Accessible.ignored: true
    }
}
