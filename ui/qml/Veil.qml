import QtQuick
import Tallyvox

// Gives what lies below it in its parent an opacity as a whole, where the ground around is of one
// colour: every pixel is drawn over by that colour. The toolkit's own way, a layer, is misplaced on
// screens of fractional scale.
Rectangle {
    required property real strength
    required property color ground

    anchors.fill: parent
    anchors.margins: -1
    z: 1
    visible: strength < 1
    color: Bee.faded(ground, 1 - strength)
}
