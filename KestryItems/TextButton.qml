import QtQuick
import KestryItems

/// A filled button of some words, with a symbol before or after them if it has one.
Pressable {
    id: root

    property string symbol: ""
    /// How far the symbol is turned, in degrees.
    property real symbolTurn: 0
    property int symbolSize: Theme.buttonSymbolSize
    /// Whether the symbol stands after the words.
    required property color fill
    required property color textColor
    required property color highlight
    property int fontSize: Theme.bodyFont
    property int fontWeight: Font.Medium
    property real padding: Theme.buttonPadding
    property real minimumWidth: Theme.buttonMinimumWidth
    property real disabledOpacity: Theme.primaryDisabledOpacity
    property real pressedOpacity: Theme.pressedOpacity

    readonly property real symbolRoom: symbol.length > 0 ? symbolSize + Theme.spacing : 0

    implicitWidth: Math.max(minimumWidth, Math.ceil(words.implicitWidth) + symbolRoom + 2 * padding)
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
            width: root.symbolSize
            height: root.symbolSize
            name: root.symbol
            color: root.textColor
            rotation: root.symbolTurn
            visible: root.symbol.length > 0
        }

        Text {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            // It does not leave a button that was made narrower than it.
            width: Math.min(Math.ceil(words.implicitWidth), root.width - 2 * root.padding - root.symbolRoom)
            text: root.label
            textFormat: Text.PlainText
            color: root.textColor
            font.pixelSize: root.fontSize
            font.weight: root.fontWeight
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
