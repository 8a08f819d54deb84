#include "tests/ui/Screen.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <QtGui/QScreen>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

namespace tallyvox {
namespace {

using Window = Screen;

TEST_F(Window, IsTitledAndEightHundredSquareInTheMiddle) {
    addOutput(7, "Card", 16);
    open();
    EXPECT_EQ(window().title(), QStringLiteral("ORBELKNOLL Tallyvox V3"));
    EXPECT_EQ(window().size(), QSize(800, 800));
    EXPECT_EQ(window().color().rgb(), QColor(17, 18, 16).rgb());
    EXPECT_TRUE(window().isActive());
    const QPoint off =
        window().geometry().center() - window().screen()->availableGeometry().center();
    // The toolkit counts a frame of two points.
    EXPECT_LE(off.manhattanLength(), 4);
}

TEST_F(Window, MakesTheFrameDarkThatTheToolkitDraws) {
    open();
    EXPECT_EQ(QGuiApplication::palette().color(QPalette::Window).rgb(), QColor(17, 18, 16).rgb());
    EXPECT_GT(QGuiApplication::palette().color(QPalette::WindowText).lightness(), 150);
}

TEST_F(Window, IsNeverSmallerThanItsContentNeeds) {
    open();
    EXPECT_EQ(window().minimumWidth(), 740);
    EXPECT_GE(window().minimumHeight(), 730);
    EXPECT_LE(window().minimumHeight(), 800);
}

TEST_F(Window, AStatusOfTwoLinesFitsWithoutGrowing) {
    open();
    const int one = window().minimumHeight();
    model().setStatus(QStringLiteral("Cannot open the file. ").repeated(9));
    picture();
    EXPECT_GT(window().minimumHeight(), one);
    EXPECT_LE(window().minimumHeight(), 800);
    EXPECT_EQ(window().height(), 800);
    EXPECT_GE(place(find(Spoken::List, QStringLiteral("Channels"))).height(), 150);
}

TEST_F(Window, AStatusOfManyLinesMakesItGrow) {
    open();
    model().setStatus(QStringLiteral("Cannot open the file. ").repeated(40));
    picture();
    EXPECT_GT(window().height(), 800);
    EXPECT_EQ(window().height(), window().minimumHeight());
    EXPECT_GE(place(find(Spoken::List, QStringLiteral("Channels"))).height(), 150);
    EXPECT_LE(place(find(Spoken::Text, QStringLiteral("V3"))).bottom(), window().height() - 28);
}

TEST_F(Window, WatchesItsOutputEverySecond) {
    addOutput(7, "Card", 16);
    open();
    start();
    ASSERT_TRUE(model().running());
    hardware.removeDevice(7);
    until([this] { return !model().running(); });
    EXPECT_EQ(model().status(),
              QStringLiteral("Output changed or disconnected. Refresh outputs before restarting."));
    EXPECT_EQ(hardware.registered(), 0U);
    EXPECT_TRUE(said(Spoken::Text).contains(QStringLiteral("STOPPED")));
    EXPECT_TRUE(said(Spoken::Text).contains(model().status()));
}

TEST_F(Window, WatchesAlsoDuringADrag) {
    addOutput(7, "Card", 16);
    open();
    model().setRunning(true);
    model().setRunning(false);
    press(find(Spoken::Slider, QStringLiteral("Peak level")));
    start();
    ASSERT_TRUE(model().running());
    hardware.removeDevice(7);
    until([this] { return !model().running(); });
}

TEST_F(Window, StopsWhatPlaysBeforeTheProgramEnds) {
    addOutput(7, "Card", 16);
    open();
    start();
    ASSERT_TRUE(model().running());
    terminate();
    EXPECT_EQ(hardware.registered(), 0U);
    EXPECT_EQ(model().status(), QStringLiteral("Stopped."));
    EXPECT_FALSE(model().running());
}

TEST_F(Window, OffersToQuitInItsMenu) {
    open();
    QTest::mouseClick(&window(), Qt::RightButton, Qt::NoModifier, QPoint(400, 100));
    picture();
    EXPECT_EQ(said(Spoken::ListItem), QStringList{QStringLiteral("Quit Tallyvox")});
    const QSignalSpy quit(qApp, &QCoreApplication::aboutToQuit);
    key(Qt::Key_Escape);
    EXPECT_TRUE(said(Spoken::ListItem).isEmpty());
}

}
}
