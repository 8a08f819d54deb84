import QtQuick
import QtQuick.Templates as T
import Tallyvox

// What opens above the view.
T.Popup {
    padding: 5
    margins: 8

    background: Shape {
        anchors.fill: parent
        anchors.margins: -Shape.Margin
        radius: 9
        fill: Bee.panel
        outline: Bee.faded(Bee.yellow, 0.4)
    }
}
