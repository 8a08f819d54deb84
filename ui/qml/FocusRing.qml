import QtQuick
import Tallyvox

// Shows where the keyboard is: a ring around its parent.
Shape {
    anchors.fill: parent
    anchors.margins: -3 - Shape.Margin
    outline: Bee.yellow
    lineWidth: 2
    radius: 11
}
