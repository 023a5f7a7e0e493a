import QtQuick
import KestryItems

/// The saturation and the brightness of a hue: to the right there is more of one, upwards more of
/// the other.
Item {
    id: root

    required property AppearanceForm form
    readonly property real step: 0.02
    readonly property int saturationPercent: Math.round(100 * form.saturation)
    readonly property int brightnessPercent: Math.round(100 * form.brightness)

    function pick(saturation: real, brightness: real): void {
        if (root.enabled) {
            root.form.pick(root.form.hue, saturation, brightness);
        }
    }

    function move(right: real, up: real): void {
        root.pick(root.form.saturation + right, root.form.brightness + up);
    }

    implicitHeight: Theme.colorFieldHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.ColorChooser
    Accessible.name: "Choose custom accent color"
    Accessible.description: "Saturation " + root.saturationPercent + " percent, brightness "
        + root.brightnessPercent + " percent"
    Accessible.onIncreaseAction: root.move(0, root.step)
    Accessible.onDecreaseAction: root.move(0, -root.step)
    Keys.onLeftPressed: root.move(-root.step, 0)
    Keys.onRightPressed: root.move(root.step, 0)
    Keys.onUpPressed: root.move(0, root.step)
    Keys.onDownPressed: root.move(0, -root.step)

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: Theme.white }
            GradientStop { position: 1; color: Qt.hsva(root.form.hue, 1, 1, 1) }
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.alpha(Theme.black, 0) }
            GradientStop { position: 1; color: Theme.black }
        }
    }

    ColorHandle {
        x: root.form.saturation * root.width - width / 2
        y: (1 - root.form.brightness) * root.height - height / 2
        color: root.form.accent
    }

    MouseArea {
        function follow(mouse: MouseEvent): void {
            root.pick(mouse.x / width, 1 - mouse.y / height);
        }

        anchors.fill: parent
        preventStealing: true
        onPressed: mouse => {
            root.forceActiveFocus(Qt.MouseFocusReason);
            follow(mouse);
        }
        onPositionChanged: mouse => follow(mouse)
    }

    FocusRing { item: root }
}
