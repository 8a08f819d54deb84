import QtQuick
import QtQuick.Layouts
import Tallyvox

// The output, the range, the mode, the level and the gap.
Item {
    id: panel

    required property Model model
    required property Presenter presenter

    readonly property bool pickerOpen: picker.popup.visible

    implicitHeight: rows.implicitHeight + 40

    Shape {
        anchors.fill: parent
        anchors.margins: -Shape.Margin
        radius: 12
        fill: Bee.panel
        outline: Bee.faded(Bee.yellow, 0.25)
    }

    ColumnLayout {
        id: rows

        anchors.fill: parent
        anchors.margins: 20
        spacing: 18

        RowLayout {
            enabled: !panel.presenter.locked
            spacing: 8

            Label {
                text: "Output device"
                opacity: enabled ? 1 : 0.5
            }
            BeePicker {
                id: picker

                Layout.fillWidth: true
                name: "Output device"
                model: panel.presenter.outputs
                chosen: panel.presenter.output
                onActivated: index => panel.presenter.choose(index)
            }
            BeeButton {
                text: "Refresh"
                prominent: false
                ground: Bee.panel
                onClicked: panel.model.refresh()
            }
        }

        RowLayout {
            enabled: !panel.presenter.unplayable
            spacing: 24

            BeeStepper {
                enabled: !panel.model.allChannels
                text: Texts.first(panel.model.first)
                value: panel.model.first
                limits: panel.presenter.firstRange
                onMoved: by => panel.presenter.moveFirst(by)
            }
            BeeStepper {
                enabled: !panel.model.allChannels
                text: Texts.last(panel.model.last)
                value: panel.model.last
                limits: panel.presenter.lastRange
                onMoved: by => panel.presenter.moveLast(by)
            }
            Item {
                Layout.fillWidth: true
            }
            BeeCheckbox {
                text: "All Channels"
                on: panel.model.allChannels
                onClicked: panel.presenter.flipAllChannels()
            }
        }

        RowLayout {
            enabled: !panel.presenter.unplayable
            spacing: 8

            BeeCheckbox {
                text: "Announce Numerically"
                on: panel.model.sequential
                onClicked: panel.presenter.flipSequential()
            }
            Item {
                Layout.fillWidth: true
            }
            Label {
                text: Texts.mode(panel.model.sequential)
                font: Typeface.plain(Typeface.Caption)
                color: Bee.muted
            }
        }

        Divider {
            strength: 0.18
        }

        ValueRow {
            name: "Peak level"
            valueText: Texts.level(panel.model.db)
            enabled: !panel.presenter.locked
            value: panel.model.db
            from: -60
            to: -6
            stepSize: 1
            onWanted: db => panel.presenter.setLevel(db)
        }

        ValueRow {
            name: "Repeat gap"
            valueText: Texts.gap(panel.model.gap)
            enabled: !panel.presenter.locked
            value: panel.model.gap
            from: 0.2
            to: 3
            stepSize: 0.1
            onWanted: seconds => panel.presenter.setGap(seconds)
        }
    }
}
