import QtQuick
import QtQuick.Templates as T
import Tallyvox

// A push button: yellow where it is the one prominent action, otherwise outlined.
T.AbstractButton {
    id: button

    required property bool prominent
    property real disabledOpacity: 1
    property color ground: Bee.background

    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Spoken.role: Spoken.Button
    Spoken.name: text
    Spoken.focused: activeFocus
    Spoken.onPressed: clicked()

    contentItem: Item {
        implicitWidth: words.implicitWidth + 36
        implicitHeight: words.implicitHeight + 24

        Shape {
            anchors.fill: parent
            anchors.margins: -Shape.Margin
            radius: 8
            clipped: true
            fill: button.prominent ? Bee.yellow : Bee.panel
            outline: Bee.faded(Bee.yellow, button.prominent ? 0 : 0.5)
        }
        Text {
            id: words

            anchors.centerIn: parent
            text: button.text
            textFormat: Text.PlainText
            font: Typeface.plain(14, Font.DemiBold)
            color: button.prominent ? Bee.background : Bee.yellow
        }
        Veil {
            strength: (button.down ? 0.7 : 1) * (button.enabled ? 1 : button.disabledOpacity)
            ground: button.ground
        }
    }

    background: Item {
        FocusRing {
            visible: button.visualFocus
        }
    }
}
