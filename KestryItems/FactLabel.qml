import QtQuick
import KestryItems

/// A small caption above its value.
Item {
    id: root

    required property string caption
    required property string value
    required property bool reducesMotion
    /// Tells more of it.
    property string tip: ""

    implicitHeight: Theme.factsHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: root.caption + ": " + root.value
    Accessible.description: root.tip

    Text {
        // What stands above leaves more room than what stands below.
        y: -Theme.captionRise
        width: parent.width
        height: parent.height / 2
        text: root.caption
        textFormat: Text.PlainText
        color: Theme.panelSecondaryText
        font.pixelSize: Theme.panelCaptionFont
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    MorphingText {
        objectName: "value"
        anchors.verticalCenter: parent.bottom
        anchors.verticalCenterOffset: -parent.height / 4
        text: root.value
        color: Theme.dark.primaryText
        font.pixelSize: Theme.panelSmallFont
        font.weight: Font.Medium
        reducesMotion: root.reducesMotion
    }

    HoverHandler { id: pointer }

    HoverTip {
        item: root
        text: root.tip
        isPointedAt: pointer.hovered
    }
}
