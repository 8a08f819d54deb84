import QtQuick
import QtQuick.Templates as T
import Tallyvox

// Shown where there is something to scroll.
T.ScrollBar {
    id: bar

    implicitWidth: 8
    implicitHeight: 8
    visible: size < 1
    minimumSize: 0.1

    background: Rectangle {
        radius: 4
        color: Bee.faded(Bee.muted, 0.06)
    }
    contentItem: Rectangle {
        implicitWidth: 8
        implicitHeight: 8
        radius: 4
        color: Bee.faded(Bee.yellow, bar.pressed || bar.hovered ? 0.7 : 0.45)
    }
}
