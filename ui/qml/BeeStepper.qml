import QtQuick
import QtQuick.Templates as T
import Tallyvox

// A labelled number that goes up and down by one.
T.Control {
    id: stepper

    required property string text
    required property real value
    required property range limits

    // The operator wants the value moved by so much.
    signal moved(real by)

    spacing: 8
    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight
    focusPolicy: Qt.StrongFocus

    Keys.onUpPressed: moved(1)
    Keys.onDownPressed: moved(-1)
    Keys.onRightPressed: moved(1)
    Keys.onLeftPressed: moved(-1)
    Keys.onPressed: event => {
        const by = new Map([[Qt.Key_PageUp, 8], [Qt.Key_PageDown, -8], [Qt.Key_Home, limits.least - value], [Qt.Key_End, limits.most - value]]).get(event.key);
        event.accepted = by !== undefined;
        if (event.accepted)
            moved(by);
    }

    Spoken.role: Spoken.Stepper
    Spoken.name: text
    Spoken.value: value
    Spoken.least: limits.least
    Spoken.most: limits.most
    Spoken.focused: activeFocus
    Spoken.onValueRequested: wanted => moved(wanted - value)

    component Half: T.AbstractButton {
        id: half

        required property int kind
        required property bool movable

        enabled: movable
        width: 18
        height: 13
        focusPolicy: Qt.NoFocus
        autoRepeat: true

        contentItem: Symbol {
            opacity: half.movable ? 1 : 0.35
            kind: half.kind
            color: "white"
        }
        leftPadding: 4
        rightPadding: 4
        topPadding: 1.5
        bottomPadding: 1.5
        background: Rectangle {
            visible: half.down
            color: Bee.faded(Bee.muted, 0.25)
        }
    }

    contentItem: Row {
        spacing: stepper.spacing

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: stepper.text
            textFormat: Text.PlainText
            font: Typeface.plain(Typeface.Body)
            color: "white"
        }
        Item {
            width: 18
            height: 26

            Shape {
                anchors.fill: parent
                anchors.margins: -Shape.Margin
                radius: 5
                fill: Bee.faded(Bee.muted, 0.22)
            }
            Half {
                kind: Symbol.ChevronUp
                movable: stepper.value < stepper.limits.most
                onPressed: stepper.moved(1)
            }
            Half {
                y: 13
                kind: Symbol.ChevronDown
                movable: stepper.value > stepper.limits.least
                onPressed: stepper.moved(-1)
            }
            Rectangle {
                x: 3
                y: 13
                width: 12
                height: 1
                color: Bee.faded(Bee.background, 0.6)
            }
        }
    }

    background: Item {
        FocusRing {
            anchors.leftMargin: -6
            anchors.rightMargin: -6
            visible: stepper.visualFocus
        }
    }

    Veil {
        strength: stepper.enabled ? 1 : 0.45
        ground: Bee.panel
    }
}
