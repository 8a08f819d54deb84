import QtQuick
import QtQuick.Templates as T
import Tallyvox

// The menu of the window where the desktop has no menu bar: one item.
BeePopup {
    id: menu

    signal quit

    modal: true
    focus: true
    onOpened: item.forceActiveFocus(Qt.PopupFocusReason)

    contentItem: BeeChoice {
        id: item

        leftPadding: 12
        text: "Quit Tallyvox"
        note: "Ctrl+Q"
        highlighted: hovered || activeFocus
        onClicked: menu.quit()
        Keys.onReturnPressed: menu.quit()
        Keys.onEnterPressed: menu.quit()
    }
}
