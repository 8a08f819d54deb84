import QtQuick
import QtQuick.Templates as T
import Tallyvox

// A choice out of a list that opens on demand. It shows the entry `chosen` and asks for what the
// operator picks.
T.ComboBox {
    id: picker

    required property string name
    required property int chosen

    implicitWidth: 200
    implicitHeight: 30
    leftPadding: 12
    rightPadding: 32
    currentIndex: chosen
    displayText: chosen < 0 ? "" : model[chosen]

    onEnabledChanged: if (!enabled) popup.close()

    Spoken.role: Spoken.Picker
    Spoken.name: name
    Spoken.description: displayText
    Spoken.expanded: popup.opened
    Spoken.focused: activeFocus && !popup.opened
    Spoken.onPressed: popup.open()

    contentItem: Text {
        text: picker.displayText
        textFormat: Text.PlainText
        elide: Text.ElideMiddle
        verticalAlignment: Text.AlignVCenter
        font: Typeface.plain(Typeface.Body)
        color: "white"
    }

    background: Shape {
        anchors.fill: parent
        anchors.margins: -Shape.Margin
        radius: 6
        clipped: true
        fill: Bee.faded(Bee.muted, picker.down ? 0.28 : 0.2)
        outline: Bee.faded(Bee.muted, 0.12)

        FocusRing {
            anchors.margins: -3
            visible: picker.visualFocus
            radius: 9
        }
    }

    indicator: Shape {
        x: picker.width - width - 4
        y: 4
        width: 22
        height: 22
        radius: 5
        fill: Bee.yellow

        Symbol {
            x: 6
            y: 2
            width: 10
            height: 10
            kind: Symbol.ChevronUp
            color: Bee.background
        }
        Symbol {
            x: 6
            y: 10
            width: 10
            height: 10
            kind: Symbol.ChevronDown
            color: Bee.background
        }
    }

    delegate: BeeChoice {
        required property string modelData
        required property int index

        width: ListView.view.width
        text: modelData
        chosen: index === picker.chosen
        highlighted: index === picker.highlightedIndex
    }

    popup: BeePopup {
        y: picker.height + 4
        width: picker.width
        height: Math.min(implicitContentHeight + topPadding + bottomPadding, picker.Window.height - 16)

        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: picker.popup.visible ? picker.delegateModel : null
            currentIndex: picker.highlightedIndex
            highlightMoveDuration: 0
            boundsBehavior: Flickable.StopAtBounds
            Spoken.role: Spoken.List
            Spoken.name: picker.name
            T.ScrollBar.vertical: BeeScrollBar {}
        }
    }

    Veil {
        strength: picker.enabled ? 1 : 0.5
        ground: Bee.panel
    }
}
