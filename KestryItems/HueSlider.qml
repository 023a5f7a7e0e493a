import QtQuick
import KestryItems

/// The hue of a colour, around the circle.
Item {
    id: root

    required property AppearanceForm form
    // What those who listen know of a slider, in degrees.
    property int value: Math.round(360 * form.hue)
    readonly property int minimumValue: 0
    readonly property int maximumValue: 360
    readonly property int stepSize: 4

    function pick(hue: real): void {
        if (root.enabled) {
            root.form.pick(hue, root.form.saturation, root.form.brightness);
        }
    }

    function move(degrees: int): void {
        root.pick(root.form.hue + degrees / 360);
    }

    implicitHeight: Theme.hueSliderHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.Slider
    Accessible.name: "Hue"
    Accessible.onIncreaseAction: root.move(root.stepSize)
    Accessible.onDecreaseAction: root.move(-root.stepSize)
    Keys.onLeftPressed: root.move(-root.stepSize)
    Keys.onRightPressed: root.move(root.stepSize)
    Keys.onDownPressed: root.move(-root.stepSize)
    Keys.onUpPressed: root.move(root.stepSize)
    // A screen reader writes the value; the form knows it otherwise.
    onValueChanged: {
        if (root.value !== Math.round(360 * root.form.hue)) {
            root.pick(root.value / 360);
            root.value = Qt.binding(() => Math.round(360 * root.form.hue));
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: Theme.hues[0] }
            GradientStop { position: 1 / 6; color: Theme.hues[1] }
            GradientStop { position: 2 / 6; color: Theme.hues[2] }
            GradientStop { position: 3 / 6; color: Theme.hues[3] }
            GradientStop { position: 4 / 6; color: Theme.hues[4] }
            GradientStop { position: 5 / 6; color: Theme.hues[5] }
            GradientStop { position: 1; color: Theme.hues[6] }
        }
    }

    ColorHandle {
        x: root.form.hue * root.width - width / 2
        anchors.verticalCenter: parent.verticalCenter
        color: Qt.hsva(root.form.hue, 1, 1, 1)
    }

    MouseArea {
        anchors.fill: parent
        preventStealing: true
        onPressed: mouse => {
            root.forceActiveFocus(Qt.MouseFocusReason);
            root.pick(mouse.x / width);
        }
        onPositionChanged: mouse => root.pick(mouse.x / width)
    }

    FocusRing { item: root; itemRadius: root.height / 2 }
}
