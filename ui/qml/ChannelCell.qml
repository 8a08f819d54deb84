import QtQuick
import QtQuick.Templates as T
import Tallyvox

// One channel: its number, and whether it alone will play.
T.AbstractButton {
    id: cell

    required property string number
    required property string caption
    required property bool soloed
    required property bool dimmed
    property bool current: false

    readonly property color ink: soloed ? Bee.background : Bee.yellow

    // Room for the outline around what fades as a whole.
    padding: -Shape.Margin
    focusPolicy: Qt.NoFocus

    Spoken.role: Spoken.Button
    Spoken.name: text
    Spoken.checked: soloed
    Spoken.focused: current
    Spoken.onPressed: clicked()

    contentItem: Item {
        Shape {
            anchors.fill: parent
            radius: 8
            fill: cell.soloed ? Bee.yellow : Bee.panel
            outline: cell.soloed ? Bee.yellow : Bee.faded(Bee.yellow, 0.3)
        }
        Column {
            anchors.centerIn: parent
            spacing: 5

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: cell.number
                font: Typeface.monospaced(21, Font.Bold)
                color: cell.ink
            }
            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                text: cell.caption
                font: Typeface.plain(10, Font.DemiBold)
                color: cell.ink
            }
        }
        Veil {
            strength: cell.dimmed ? 0.4 : 1
            ground: Bee.background
        }
    }

    // Shows where the keyboard is: inside, so that the grid's edge does not cut it.
    Shape {
        anchors.fill: parent
        z: 1
        radius: 7
        visible: cell.current
        outline: Bee.background
        lineWidth: 2
    }
    Shape {
        anchors.fill: parent
        anchors.margins: -Shape.Margin
        z: 1
        radius: 8
        visible: cell.current
        outline: Bee.yellow
        lineWidth: 2
    }
}
