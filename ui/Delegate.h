#pragma once

#include "model/Model.h"
#include "ui/Presenter.h"

#include <QtCore/QTimer>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>

namespace tallyvox {

/// The application shell: the one model, the one window, and the audio's end before the program's.
/// Needs the application object; main thread only.
class Delegate {
public:
    /// Makes the model, which lists the outputs; no window yet.
    explicit Delegate(Hardware& hardware = tallyvox::hardware());
    Delegate(const Delegate&) = delete;
    Delegate& operator=(const Delegate&) = delete;
    /// Stops what plays.
    ~Delegate();

    /// What must be chosen before the application object is made: software rendering, which opens
    /// the window sooner and in less memory than a graphics card's does, and that assistive
    /// technology finds the program at any time.
    static void prepare();

    /// Opens the window in front, centred, and starts the watch over the output.
    void applicationDidFinishLaunching();

    /// Stops what plays; called on every orderly way out, before the process ends.
    void applicationWillTerminate();

    Model& model() noexcept { return model_; }
    /// The window; null until it is opened.
    QQuickWindow* window() const noexcept { return window_; }

private:
    Model model_;
    Presenter presenter_;
    QTimer timer_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
};

}
