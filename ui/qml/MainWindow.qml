import QtQuick
import Tallyvox

// The one window of the program.
Window {
    id: window

    required property Model model
    required property Presenter presenter

    title: "ORBELKNOLL Tallyvox V3"
    color: Bee.background
    width: 800
    height: 800
    minimumWidth: 740
    minimumHeight: view.leastHeight
    onMinimumHeightChanged: height = Math.max(height, minimumHeight)

    MainView {
        id: view

        anchors.fill: parent
        model: window.model
        presenter: window.presenter
        onQuit: Qt.quit()
    }
}
