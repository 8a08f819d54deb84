import QtQuick
import QtQuick.Layouts
import Tallyvox

// A hairline across the row, in yellow of the opacity given.
Rectangle {
    required property real strength

    Layout.fillWidth: true
    implicitHeight: 1
    color: Bee.faded(Bee.yellow, strength)
}
