import QtQuick
import Tallyvox

// One channel: its number, and whether it alone will play. Out of sight it is there for assistive
// technology alone; what is drawn is made while it is in sight.
Item {
    id: cell

    required property string number
    required property string caption
    required property string label
    required property bool soloed
    required property bool dimmed
    required property bool inSight
    property bool current: false

    // The operator's hand is on the cell.
    signal held
    // The operator solos the channel, or no longer.
    signal flipped

    Spoken.role: Spoken.Button
    Spoken.name: label
    Spoken.checked: soloed
    Spoken.focused: current
    Spoken.onPressed: flipped()

    Loader {
        anchors.fill: parent
        active: cell.inSight

        sourceComponent: ChannelFace {
            number: cell.number
            caption: cell.caption
            soloed: cell.soloed
            dimmed: cell.dimmed
            onPressed: cell.held()
            onClicked: cell.flipped()
        }
    }

    // Shows where the keyboard is: inside, so that the grid's edge does not cut it.
    Loader {
        anchors.fill: parent
        anchors.margins: -Shape.Margin
        active: cell.current

        sourceComponent: Item {
            Shape {
                anchors.fill: parent
                anchors.margins: Shape.Margin + 1
                radius: 6
                outline: Bee.background
                lineWidth: 2
            }
            Shape {
                anchors.fill: parent
                radius: 8
                outline: Bee.yellow
                lineWidth: 2
            }
        }
    }
}
