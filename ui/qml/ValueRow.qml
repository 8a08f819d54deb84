import QtQuick
import QtQuick.Layouts
import Tallyvox

// A slider between its name and its value in words.
RowLayout {
    id: row

    required property string name
    required property string valueText
    property alias value: slider.value
    property alias from: slider.from
    property alias to: slider.to
    property alias stepSize: slider.stepSize

    // The operator wants the value to be so much.
    signal wanted(real value)

    spacing: 8

    Label {
        Layout.preferredWidth: 85
        text: row.name
    }
    BeeSlider {
        id: slider

        Layout.fillWidth: true
        name: row.name
        valueText: row.valueText
        onWanted: value => row.wanted(value)
    }
    Label {
        Layout.preferredWidth: 85
        text: row.valueText
        font: Typeface.digits(Typeface.Body)
        horizontalAlignment: Text.AlignHCenter
    }
}
