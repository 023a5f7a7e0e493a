import QtQuick

Rectangle {
    width: 182
    height: 34
    color: "#000000"
}
