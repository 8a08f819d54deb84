import QtQuick
import QtQuick.Templates as T
import Tallyvox

// One line of what opens: a text, marked where it is the present choice, with a note at its end.
T.ItemDelegate {
    id: choice

    property bool chosen: false
    property string note: ""

    leftPadding: 28
    rightPadding: 12
    implicitWidth: words.implicitWidth + end.implicitWidth + leftPadding + rightPadding + 24
    implicitHeight: 28

    Spoken.role: Spoken.ListItem
    Spoken.name: text
    Spoken.checked: chosen
    Spoken.focused: highlighted
    Spoken.onPressed: clicked()

    contentItem: Item {
        Text {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - end.implicitWidth
            text: choice.text
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            font: Typeface.plain(Typeface.Body)
            color: choice.highlighted ? Bee.background : "white"
        }
        Text {
            id: end

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: choice.note
            textFormat: Text.PlainText
            font: Typeface.plain(Typeface.Callout)
            color: choice.highlighted ? Bee.background : Bee.muted
        }
    }
    background: Shape {
        anchors.fill: parent
        anchors.margins: -Shape.Margin
        radius: 5
        fill: choice.highlighted ? Bee.yellow : "transparent"

        Symbol {
            x: 8
            y: 6
            width: 16
            height: 16
            visible: choice.chosen
            kind: Symbol.Checkmark
            color: choice.highlighted ? Bee.background : Bee.yellow
        }
    }
}
