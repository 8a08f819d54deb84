#include "tests/ui/Screen.h"

#include <QtCore/QElapsedTimer>
#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <algorithm>

namespace tallyvox {

namespace {

void collect(QQuickItem* item, std::vector<QQuickItem*>& found) {
    for (QQuickItem* child : item->childItems()) {
        if (!child->isVisible())
            continue;
        if (Spoken::of(child) != nullptr)
            found.push_back(child);
        collect(child, found);
    }
}

std::vector<QQuickItem*> speakers(const QQuickWindow& window) {
    std::vector<QQuickItem*> found;
    collect(window.contentItem(), found);
    std::stable_sort(found.begin(), found.end(), [](QQuickItem* a, QQuickItem* b) {
        return a->mapToScene({}).y() < b->mapToScene({}).y();
    });
    return found;
}

}

void needApplication() {
    static int count = 1;
    static char name[] = "ui_tests";
    static char* words[] = {name, nullptr};
    static const QGuiApplication* application = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_SCALE_FACTOR", "1");
        Delegate::prepare();
        return new QGuiApplication(count, words);
    }();
    ASSERT_NE(application, nullptr);
}

Screen::Screen() { needApplication(); }

Screen::~Screen() = default;

void Screen::addOutput(std::uint32_t id, std::string name, std::uint32_t channels, double rate) {
    voices_.fillUpTo(std::min<std::int64_t>(channels, 128));
    hardware.addDevice(id, std::move(name), {channels}, rate);
}

void Screen::open() {
    delegate_ = std::make_unique<Delegate>(hardware);
    delegate_->applicationDidFinishLaunching();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    picture();
}

QImage Screen::picture() {
    QCoreApplication::processEvents();
    return window().grabWindow();
}

QColor Screen::at(QPointF point) { return picture().pixelColor(point.toPoint()); }

QColor Screen::at(const QQuickItem& item, QPointF point) { return at(item.mapToScene(point)); }

QQuickItem& Screen::find(Spoken::Role role, const QString& name) {
    for (QQuickItem* item : speakers(window())) {
        const Spoken& told = *Spoken::of(item);
        if (told.role == role && told.name == name)
            return *item;
    }
    throw std::runtime_error("nothing on the screen says " + name.toStdString());
}

QStringList Screen::said(Spoken::Role role) {
    QStringList names;
    for (const QQuickItem* item : speakers(window())) {
        if (Spoken::of(item)->role == role)
            names.append(Spoken::of(item)->name);
    }
    return names;
}

QRectF Screen::place(const QQuickItem& item) { return QRectF(item.mapToScene({}), item.size()); }

void Screen::click(const QQuickItem& item) {
    click(item, place(item).center() - place(item).topLeft());
}

void Screen::click(const QQuickItem& item, QPointF point) {
    QTest::mouseClick(&window(), Qt::LeftButton, Qt::NoModifier, item.mapToScene(point).toPoint());
    picture();
}

void Screen::press(const QQuickItem& item) {
    QTest::mousePress(&window(), Qt::LeftButton, Qt::NoModifier, place(item).center().toPoint());
    picture();
}

void Screen::release(const QQuickItem& item) {
    QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, place(item).center().toPoint());
    picture();
}

void Screen::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&window(), key, modifiers);
    picture();
}

void Screen::start() {
    model().start();
    until([this] { return !model().busy(); });
    picture();
}

void Screen::until(const std::function<bool()>& done) { EXPECT_TRUE(QTest::qWaitFor(done, 20000)); }

QString Screen::focus() {
    for (const QQuickItem* item : speakers(window())) {
        if (Spoken::of(item)->focused)
            return Spoken::of(item)->name;
    }
    return {};
}

}
