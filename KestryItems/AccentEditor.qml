import QtQuick
import KestryItems

/// An accent of the user's own, by a picker or by its digits.
Column {
    id: root

    required property AppearanceForm form

    signal closed

    function begin(): void {
        field.forceActiveFocus();
    }

    spacing: Theme.controlRadius
    Accessible.role: Accessible.Grouping
    Accessible.name: heading.text
    Keys.onEscapePressed: root.closed()

    Item {
        width: parent.width
        height: closing.height

        Text {
            id: heading
            anchors.left: parent.left
            anchors.right: closing.left
            anchors.verticalCenter: parent.verticalCenter
            text: "Custom accent"
            textFormat: Text.PlainText
            color: Theme.workspace.primaryText
            font.pixelSize: Theme.timerFont
            font.weight: Font.Medium
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        IconButton {
            id: closing
            anchors.right: parent.right
            symbol: "xmark"
            label: "Close color editor"
            onTriggered: root.closed()
        }
    }

    Text {
        width: parent.width
        text: "Choose color"
        textFormat: Text.PlainText
        color: Theme.workspace.secondaryText
        font.pixelSize: Theme.smallFont
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    ColorField {
        id: field
        width: parent.width
        form: root.form
    }

    HueSlider {
        width: parent.width
        form: root.form
    }

    FormTextField {
        width: parent.width
        label: "Accent hex color"
        placeholder: "#RRGGBB"
        text: root.form.hexText
        onEdited: text => root.form.writeHex(text)
    }

    FormMessage {
        width: parent.width
        message: root.form.hexError
    }
}
