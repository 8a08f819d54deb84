import QtQuick
import Tallyvox

// Whether an announcement plays, in a capsule.
Item {
    id: badge

    required property bool playing

    implicitWidth: Math.ceil(words.implicitWidth) + 24
    implicitHeight: words.implicitHeight + 16

    Shape {
        anchors.fill: parent
        anchors.margins: -Shape.Margin
        radius: height
        outline: Bee.faded(Bee.yellow, 0.4)
    }
    Label {
        id: words

        anchors.centerIn: parent
        text: Texts.badge(badge.playing)
        font: Typeface.monospaced(12, Font.Bold)
        color: badge.playing ? Bee.yellow : Bee.muted
    }
}
