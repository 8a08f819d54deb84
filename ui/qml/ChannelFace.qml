import QtQuick
import QtQuick.Templates as T
import Tallyvox

// How a channel's cell looks and takes the mouse.
T.AbstractButton {
    id: face

    required property string number
    required property string caption
    required property bool soloed
    required property bool dimmed

    readonly property color ink: soloed ? Bee.background : Bee.yellow

    // Room for the outline around what fades as a whole.
    padding: -Shape.Margin
    focusPolicy: Qt.NoFocus

    contentItem: Item {
        Shape {
            anchors.fill: parent
            radius: 8
            fill: face.soloed ? Bee.yellow : Bee.panel
            outline: face.soloed ? Bee.yellow : Bee.faded(Bee.yellow, 0.3)
        }
        Column {
            anchors.centerIn: parent
            spacing: 5

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: face.number
                font: Typeface.monospaced(21, Font.Bold)
                color: face.ink
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: face.caption
                font: Typeface.plain(10, Font.DemiBold)
                color: face.ink
            }
        }
        Veil {
            strength: face.dimmed ? 0.4 : 1
            ground: Bee.background
        }
    }
}
