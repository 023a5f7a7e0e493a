import QtQuick
import KestryItems

/// A filled button of some words, with a symbol before them if it has one.
Pressable {
    id: root

    property string symbol: ""
    required property color fill
    required property color textColor
    required property color highlight
    property int fontSize: Theme.bodyFont
    property int fontWeight: Font.Medium
    property real padding: Theme.buttonPadding
    property real minimumWidth: Theme.buttonMinimumWidth
    property real disabledOpacity: Theme.primaryDisabledOpacity
    property real pressedOpacity: Theme.pressedOpacity

    implicitWidth: Math.max(minimumWidth, Math.ceil(content.implicitWidth) + 2 * padding)
    implicitHeight: Theme.buttonHeight
    opacity: enabled ? (isPressed ? pressedOpacity : 1) : disabledOpacity

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: root.fill
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: root.highlight
        visible: root.isHighlighted
    }

    Row {
        id: content
        anchors.centerIn: parent
        spacing: Theme.spacing

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.smallSymbolSize
            height: Theme.smallSymbolSize
            name: root.symbol
            color: root.textColor
            visible: root.symbol.length > 0
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.label
            textFormat: Text.PlainText
            color: root.textColor
            font.pixelSize: root.fontSize
            font.weight: root.fontWeight
            Accessible.ignored: true
        }
    }
}
