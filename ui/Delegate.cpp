#include "ui/Delegate.h"

#include "base/fatal.h"
#include "model/OutputWatch.h"
#include "ui/Bee.h"
#include "ui/Spoken.h"
#include "ui/Typeface.h"
#include "ui/desktop.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <QtGui/QScreen>

#include <chrono>

/// Generated: makes the types of the module known to QML. Naming it keeps it in the program.
void qml_register_types_Tallyvox();

namespace tallyvox {

Delegate::Delegate(Hardware& hardware) : model_(hardware), presenter_(model_) {
    timer_.setInterval(std::chrono::seconds(1));
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &model_, [this] { watchOutput(model_); });
}

Delegate::~Delegate() { applicationWillTerminate(); }

void Delegate::prepare() {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    openToAssistiveTechnology();
}

void Delegate::applicationDidFinishLaunching() {
    Typeface::load();
    installSpoken();

    qml_register_types_Tallyvox();
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine_.setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model_)},
                                  {QStringLiteral("presenter"), QVariant::fromValue(&presenter_)}});
    engine_.load(QUrl(QStringLiteral("qrc:/qt/qml/Tallyvox/qml/MainWindow.qml")));
    require(!engine_.rootObjects().isEmpty());
    window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());

    const QRect screen = window_->screen()->availableGeometry();
    window_->setPosition(screen.center() - QRect({}, window_->size()).center());
    // Where the toolkit draws the frame itself, on Wayland, it takes the application's colours.
    QGuiApplication::setPalette(QPalette(Bee::panel(), Bee::background()));
    askForDarkFrame(*window_);
    window_->show();
    window_->raise();
    window_->requestActivate();
    timer_.start();
}

void Delegate::applicationWillTerminate() { model_.stop(); }

}
