import QtQuick

/// A small caption above its value.
Column {
    id: root

    required property string caption
    required property string value

    Accessible.role: Accessible.StaticText
    Accessible.name: root.caption + ": " + root.value

    Text {
        width: parent.width
        height: Theme.factsHeight / 2
        text: root.caption
        color: Theme.secondaryText
        font.pixelSize: Theme.captionFont
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Text {
        width: parent.width
        height: Theme.factsHeight / 2
        text: root.value
        color: Theme.primaryText
        font.pixelSize: Theme.smallFont
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
