import QtQuick
import QtQuick.Layouts
import Tallyvox

// The whole content of the window.
Item {
    id: view

    required property Model model
    required property Presenter presenter

    // The least height at which nothing is cut off.
    readonly property int leastHeight: Math.max(730, Math.ceil(stack.implicitHeight + 2 * stack.anchors.margins))

    // The operator wants to leave.
    signal quit

    Rectangle {
        anchors.fill: parent
        color: Bee.background
    }

    Shortcut {
        sequence: "Escape"
        enabled: view.model.running && !panel.pickerOpen && !menu.visible
        onActivated: view.model.stop()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        context: Qt.ApplicationShortcut
        onActivated: view.quit()
    }
    Shortcut {
        sequences: ["Menu", "Shift+F10"]
        onActivated: menu.open()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: point => {
            menu.x = point.position.x;
            menu.y = point.position.y;
            menu.open();
        }
    }
    QuitMenu {
        id: menu

        onQuit: view.quit()
    }

    ColumnLayout {
        id: stack

        anchors.fill: parent
        anchors.margins: 28
        spacing: 20

        RowLayout {
            Label {
                text: "TALLYVOX"
                font: Typeface.rounded(27)
                color: Bee.yellow
                // Less than the font's own height: a status of two lines fits in 800 points.
                Layout.preferredHeight: 33
                verticalAlignment: Text.AlignVCenter
                Spoken.role: Spoken.Heading
            }
            Item {
                Layout.fillWidth: true
            }
            Badge {
                playing: view.model.running
            }
        }

        Label {
            text: "Every output speaks its own number."
            font: Typeface.plain(Typeface.Title3)
            color: Bee.muted
        }

        SettingsPanel {
            id: panel

            Layout.fillWidth: true
            model: view.model
            presenter: view.presenter
        }

        RowLayout {
            Label {
                text: Texts.range(view.model.first, view.model.last)
                font: Typeface.monospaced(Typeface.Subheadline, Font.Bold)
                color: Bee.yellow
            }
            Item {
                Layout.fillWidth: true
            }
            Label {
                text: Texts.hint(view.model.sequential)
                font: Typeface.plain(Typeface.Callout)
                color: Bee.muted
            }
        }

        ChannelGrid {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.minimumHeight: 150
            implicitHeight: 150
            presenter: view.presenter
            playable: !view.presenter.unplayable && !view.model.sequential
        }

        Label {
            Layout.fillWidth: true
            text: view.model.status
            font: Typeface.plain(Typeface.Callout)
            color: Bee.muted
            wrapMode: Text.Wrap
        }

        RowLayout {
            spacing: 8

            BeeButton {
                id: start

                text: "Start announcing"
                prominent: true
                enabled: !view.presenter.unplayable
                disabledOpacity: 0.45
                onClicked: view.model.start()
            }
            BeeButton {
                text: "Stop"
                prominent: false
                enabled: view.model.running
                disabledOpacity: 0.4
                onClicked: view.model.stop()
                // The keyboard goes back to where it came from.
                onEnabledChanged: {
                    if (!enabled && focus)
                        start.forceActiveFocus(focusReason);
                }
            }
            Item {
                Layout.fillWidth: true
            }
            Label {
                text: Texts.announcement(view.model.sequential, view.model.solo, view.model.first, view.model.last)
                font: Typeface.plain(Typeface.Caption)
                color: Bee.muted
            }
        }

        Divider {
            strength: 0.3
        }

        RowLayout {
            Label {
                text: "ORBELKNOLL"
                font: Typeface.monospaced(12, Font.DemiBold)
                color: Bee.yellow
            }
            Item {
                Layout.fillWidth: true
            }
            Label {
                text: "V3"
                font: Typeface.plain(12, Font.DemiBold)
                color: Bee.muted
            }
        }
    }
}
