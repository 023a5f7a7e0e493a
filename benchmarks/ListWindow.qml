import QtQuick

Rectangle {
    id: root

    required property var texts

    color: "#101112"

    ListView {
        anchors.fill: parent
        model: root.texts
        delegate: Text {
            required property string modelData

            height: 56
            text: modelData
            textFormat: Text.PlainText
            color: "#F3F3EF"
        }
    }
}
