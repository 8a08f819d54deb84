import QtQuick
import QtQuick.Templates as T
import Tallyvox

// A level to drag. It shows `shown` and asks for what the operator moves it to.
T.Slider {
    id: slider

    required property string name
    required property string valueText

    // The operator wants the value to be so much.
    signal wanted(real value)

    implicitWidth: 200
    implicitHeight: 20
    snapMode: T.Slider.SnapAlways

    onMoved: wanted(value)
    Keys.onUpPressed: wanted(value + stepSize)
    Keys.onDownPressed: wanted(value - stepSize)
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
        if (event.accepted)
            wanted(event.key === Qt.Key_Home ? from : to);
    }

    Spoken.role: Spoken.Slider
    Spoken.name: name
    Spoken.description: valueText
    Spoken.value: value
    Spoken.least: from
    Spoken.most: to
    Spoken.step: stepSize
    Spoken.focused: activeFocus
    Spoken.onValueRequested: value => wanted(value)

    background: Item {
        Shape {
            anchors.verticalCenter: parent.verticalCenter
            x: -Shape.Margin
            width: parent.width + 2 * Shape.Margin
            height: 4 + 2 * Shape.Margin
            radius: 2
            fill: Bee.faded(Bee.muted, 0.25)
        }
        Shape {
            anchors.verticalCenter: parent.verticalCenter
            x: -Shape.Margin
            width: slider.handle.x + slider.handle.width / 2 + 2 * Shape.Margin
            height: 4 + 2 * Shape.Margin
            radius: 2
            fill: Bee.yellow
        }
    }

    handle: Item {
        x: Math.round(slider.visualPosition * (slider.width - width))
        width: 20
        height: 20

        Shape {
            anchors.fill: parent
            anchors.margins: -Shape.Margin
            radius: 10
            fill: Qt.tint("white", Bee.faded(Bee.muted, slider.pressed ? 0 : 0.3))
        }
        FocusRing {
            visible: slider.visualFocus
            radius: 13
        }
    }

    Veil {
        strength: slider.enabled ? 1 : 0.5
        ground: Bee.panel
    }
}
