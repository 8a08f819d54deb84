import QtQuick
import QtQuick.Templates as T
import Tallyvox

// A cell for every channel of the range, eight in a row. One stop for the keyboard: arrows, Home
// and End move inside, space solos.
T.Control {
    id: grid

    required property Presenter presenter
    required property bool playable

    readonly property int columns: 8
    readonly property int gap: 8

    // The nearest whole pixel of the screen.
    function snapped(position) {
        return Math.round(position * Screen.devicePixelRatio) / Screen.devicePixelRatio;
    }

    focusPolicy: playable ? Qt.StrongFocus : Qt.NoFocus

    Keys.forwardTo: [cells]
    Keys.onSpacePressed: cells.currentItem?.press()
    Keys.onReturnPressed: cells.currentItem?.press()
    Keys.onEnterPressed: cells.currentItem?.press()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
        if (event.accepted)
            cells.currentIndex = event.key === Qt.Key_Home ? 0 : cells.count - 1;
    }

    Spoken.role: Spoken.List
    Spoken.name: "Channels"

    contentItem: Item {
        // A point more on every side for the cells' outlines.
        Item {
            anchors.fill: parent
            anchors.margins: -1
            clip: true

            GridView {
                id: cells

                x: 1
                y: 1
                width: grid.width + grid.gap
                height: grid.height
                cellWidth: width / grid.columns
                cellHeight: 66 + grid.gap
                // Room for the cells of all channels: none is out of reach of assistive technology.
                cacheBuffer: 128 / grid.columns * cellHeight
                boundsBehavior: Flickable.StopAtBounds
                interactive: contentHeight - grid.gap > height
                keyNavigationEnabled: true
                highlightFollowsCurrentItem: false
                model: grid.presenter.channels
                T.ScrollBar.vertical: scrollBar
                onCurrentIndexChanged: positionViewAtIndex(currentIndex, GridView.Contain)

                delegate: Item {
                    id: place

                    required property int index
                    required property real channel
                    required property string number
                    required property string caption
                    required property string label
                    required property bool soloed
                    required property bool dimmed

                    readonly property int column: index % grid.columns

                    function press() {
                        cells.currentIndex = index;
                        grid.presenter.flipSolo(channel);
                    }

                    width: cells.cellWidth
                    height: cells.cellHeight

                    ChannelCell {
                        x: grid.snapped(place.column * cells.cellWidth) - place.column * cells.cellWidth
                        width: grid.snapped((place.column + 1) * cells.cellWidth) - grid.snapped(place.column * cells.cellWidth) - grid.gap
                        height: 66
                        enabled: grid.playable
                        number: place.number
                        caption: place.caption
                        label: place.label
                        soloed: place.soloed
                        dimmed: place.dimmed
                        inSight: place.y > cells.contentY - 2 * cells.cellHeight && place.y < cells.contentY + cells.height + cells.cellHeight
                        current: grid.visualFocus && place.GridView.isCurrentItem
                        onHeld: grid.forceActiveFocus(Qt.MouseFocusReason)
                        onFlipped: place.press()
                    }
                }
            }
        }

        BeeScrollBar {
            id: scrollBar

            x: grid.width + 10
            height: grid.height
        }
    }
}
