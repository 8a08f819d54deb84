import QtQuick
import QtQuick.Templates as T
import Tallyvox

// An on/off control: the whole row is the target, a click flips the value once.
T.AbstractButton {
    id: box

    required property bool on

    topPadding: 6
    bottomPadding: 6
    spacing: 8
    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    Spoken.role: Spoken.CheckBox
    Spoken.name: text
    Spoken.description: Texts.checked(on)
    Spoken.checked: on
    Spoken.focused: activeFocus
    Spoken.onPressed: clicked()

    contentItem: Row {
        spacing: box.spacing

        Symbol {
            width: 20
            height: 20
            kind: box.on ? Symbol.CheckmarkSquare : Symbol.Square
            color: Bee.yellow
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: box.text
            textFormat: Text.PlainText
            font: Typeface.plain(14, Font.Medium)
            color: "white"
        }
    }

    background: Item {
        FocusRing {
            anchors.leftMargin: -6
            anchors.rightMargin: -6
            visible: box.visualFocus
        }
    }

    Veil {
        strength: box.enabled ? 1 : 0.5
        ground: Bee.panel
    }
}
