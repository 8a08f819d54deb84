import QtQuick
import QtQuick.Templates as T
import Tallyvox

// A push button: yellow where it is the one prominent action, otherwise outlined.
T.AbstractButton {
    id: button

    required property bool prominent
    property real disabledOpacity: 1

    leftPadding: 18
    rightPadding: 18
    topPadding: 12
    bottomPadding: 12
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    opacity: (down ? 0.7 : 1) * (enabled ? 1 : disabledOpacity)
    layer.enabled: opacity < 1

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Spoken.role: Spoken.Button
    Spoken.name: text
    Spoken.focused: activeFocus
    Spoken.onPressed: clicked()

    contentItem: Text {
        text: button.text
        textFormat: Text.PlainText
        font: Typeface.plain(14, Font.DemiBold)
        color: button.prominent ? Bee.background : Bee.yellow
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Item {
        Shape {
            anchors.fill: parent
            anchors.margins: -Shape.Margin
            radius: 8
            clipped: true
            fill: button.prominent ? Bee.yellow : Bee.panel
            outline: Bee.faded(Bee.yellow, button.prominent ? 0 : 0.5)
        }
        FocusRing {
            visible: button.visualFocus
        }
    }
}
