#include "tests/ui/Screen.h"

namespace tallyvox {
namespace {

/// The window without a mouse.
class Keyboard : public Screen {
protected:
    Keyboard() {
        addOutput(7, "Card", 16);
        addOutput(9, "Wall", 64);
        open();
    }

    void tabTo(const QString& name) {
        for (int step = 0; step < 20 && focus() != name; ++step)
            key(Qt::Key_Tab);
        EXPECT_EQ(focus(), name);
    }
};

TEST_F(Keyboard, GoesThroughTheControlsFromTopToBottomAndBack) {
    const QStringList order{QStringLiteral("Output device"),
                            QStringLiteral("Refresh"),
                            QStringLiteral("First: 1"),
                            QStringLiteral("Last: 8"),
                            QStringLiteral("All Channels"),
                            QStringLiteral("Announce Numerically"),
                            QStringLiteral("Peak level"),
                            QStringLiteral("Repeat gap"),
                            QStringLiteral("Channel 1, select solo"),
                            QStringLiteral("Start announcing")};
    for (int round = 0; round < 2; ++round) {
        for (const QString& name : order) {
            key(Qt::Key_Tab);
            EXPECT_EQ(focus(), name);
        }
    }
    for (auto name = order.rbegin() + 1; name != order.rend(); ++name) {
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(focus(), *name);
    }
}

TEST_F(Keyboard, ArrowsMoveInsideTheGridAndSpaceSolos) {
    tabTo(QStringLiteral("Channel 1, select solo"));
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(focus(), QStringLiteral("Channel 3, select solo"));
    key(Qt::Key_Space);
    EXPECT_EQ(model().solo(), 3);
    EXPECT_EQ(focus(), QStringLiteral("Channel 3, solo selected"));
    key(Qt::Key_End);
    key(Qt::Key_Return);
    EXPECT_EQ(model().solo(), 8);
    key(Qt::Key_Home);
    key(Qt::Key_Enter);
    EXPECT_EQ(model().solo(), 1);
    key(Qt::Key_Space);
    EXPECT_EQ(model().solo(), 0);
}

TEST_F(Keyboard, ArrowsUpAndDownMoveByARowAndScroll) {
    model().setAllChannels(true);
    model().setSelected(9);
    tabTo(QStringLiteral("Channel 1, select solo"));
    for (int row = 0; row < 7; ++row)
        key(Qt::Key_Down);
    EXPECT_EQ(focus(), QStringLiteral("Channel 57, select solo"));
    const QRectF seen = place(find(Spoken::Button, focus()));
    const QRectF grid = place(find(Spoken::List, QStringLiteral("Channels")));
    EXPECT_GE(seen.top(), grid.top());
    EXPECT_LE(seen.bottom(), grid.bottom());
}

TEST_F(Keyboard, ReachesEveryCellAndBringsItIntoSight) {
    model().setSelected(9);
    model().setAllChannels(true);
    tabTo(QStringLiteral("Channel 1, select solo"));
    const QRectF grid = place(find(Spoken::List, QStringLiteral("Channels")));
    for (int channel = 1; channel <= 64; ++channel) {
        EXPECT_EQ(focus(), QStringLiteral("Channel %1, select solo").arg(channel));
        const QQuickItem& cell = find(Spoken::Button, focus());
        EXPECT_TRUE(grid.contains(place(cell))) << channel;
        EXPECT_EQ(at(cell, {10, 33}), QColor(37, 39, 35)) << channel;
        key(Qt::Key_Right);
    }
    key(Qt::Key_Space);
    EXPECT_EQ(model().solo(), 64);
    key(Qt::Key_Home);
    EXPECT_EQ(focus(), QStringLiteral("Channel 1, select solo"));
    key(Qt::Key_End);
    EXPECT_EQ(focus(), QStringLiteral("Channel 64, solo selected"));
}

TEST_F(Keyboard, StepsTheRange) {
    tabTo(QStringLiteral("First: 1"));
    key(Qt::Key_Up);
    EXPECT_EQ(model().first(), 2);
    key(Qt::Key_End);
    EXPECT_EQ(model().first(), 8);
    key(Qt::Key_Down);
    key(Qt::Key_Home);
    EXPECT_EQ(model().first(), 1);
    tabTo(QStringLiteral("Last: 8"));
    key(Qt::Key_PageUp);
    EXPECT_EQ(model().last(), 16);
    key(Qt::Key_Up);
    EXPECT_EQ(model().last(), 16);
    key(Qt::Key_Left);
    EXPECT_EQ(model().last(), 15);
}

TEST_F(Keyboard, FlipsTheCheckBoxes) {
    tabTo(QStringLiteral("All Channels"));
    key(Qt::Key_Space);
    EXPECT_TRUE(model().allChannels());
    key(Qt::Key_Return);
    EXPECT_FALSE(model().allChannels());
    tabTo(QStringLiteral("Announce Numerically"));
    key(Qt::Key_Space);
    EXPECT_TRUE(model().sequential());
}

TEST_F(Keyboard, MovesTheSliders) {
    tabTo(QStringLiteral("Peak level"));
    key(Qt::Key_Right);
    EXPECT_EQ(model().db(), -23);
    key(Qt::Key_Down);
    key(Qt::Key_Left);
    EXPECT_EQ(model().db(), -25);
    key(Qt::Key_End);
    EXPECT_EQ(model().db(), -6);
    key(Qt::Key_Home);
    EXPECT_EQ(model().db(), -60);
    tabTo(QStringLiteral("Repeat gap"));
    key(Qt::Key_Left);
    EXPECT_EQ(model().gap(), 0.6);
    for (int step = 0; step < 10; ++step)
        key(Qt::Key_Left);
    EXPECT_EQ(model().gap(), 0.2);
    for (int step = 0; step < 40; ++step)
        key(Qt::Key_Up);
    EXPECT_EQ(model().gap(), 3.0);
}

TEST_F(Keyboard, ChoosesAnOutput) {
    tabTo(QStringLiteral("Output device"));
    key(Qt::Key_Space);
    key(Qt::Key_Down);
    EXPECT_EQ(model().selected(), 7U);
    key(Qt::Key_Return);
    EXPECT_EQ(model().selected(), 9U);
    key(Qt::Key_Up);
    EXPECT_EQ(model().selected(), 7U);
}

TEST_F(Keyboard, EscapeStopsWhileItRunsAndOnlyThen) {
    const QString before = model().status();
    key(Qt::Key_Escape);
    EXPECT_EQ(model().status(), before);
    start();
    ASSERT_TRUE(model().running());
    key(Qt::Key_Escape, Qt::ShiftModifier);
    EXPECT_TRUE(model().running());
    key(Qt::Key_Escape);
    EXPECT_FALSE(model().running());
    EXPECT_EQ(model().status(), QStringLiteral("Stopped."));
    EXPECT_EQ(hardware.registered(), 0U);
}

TEST_F(Keyboard, EscapeClosesThePickerFirst) {
    tabTo(QStringLiteral("Output device"));
    key(Qt::Key_Space);
    EXPECT_TRUE(said(Spoken::List).contains(QStringLiteral("Output device")));
    model().setRunning(true);
    model().setRunning(false);
    tabTo(QStringLiteral("Output device"));
    key(Qt::Key_Space);
    EXPECT_TRUE(said(Spoken::List).contains(QStringLiteral("Output device")));
    key(Qt::Key_Escape);
    EXPECT_FALSE(said(Spoken::List).contains(QStringLiteral("Output device")));
}

TEST_F(Keyboard, LeavesStartWhileItPlaysAndComesBackAfterStop) {
    tabTo(QStringLiteral("Start announcing"));
    key(Qt::Key_Space);
    until([this] { return model().running(); });
    EXPECT_NE(focus(), QStringLiteral("Start announcing"));
    tabTo(QStringLiteral("Stop"));
    key(Qt::Key_Space);
    EXPECT_FALSE(model().running());
    EXPECT_EQ(focus(), QStringLiteral("Start announcing"));
    key(Qt::Key_Return);
    until([this] { return model().running(); });
    key(Qt::Key_Escape);
    EXPECT_EQ(focus(), QStringLiteral("Start announcing"));
}

TEST_F(Keyboard, IsShownByARingThatAMouseDoesNotShow) {
    QQuickItem& refresh = find(Spoken::Button, QStringLiteral("Refresh"));
    const QPointF ring(-3, refresh.height() / 2);
    click(find(Spoken::CheckBox, QStringLiteral("All Channels")));
    const QColor bare = at(refresh, ring);
    tabTo(QStringLiteral("Refresh"));
    EXPECT_NE(at(refresh, ring), bare);
    key(Qt::Key_Tab);
    EXPECT_EQ(at(refresh, ring), bare);
}

TEST_F(Keyboard, IsShownInsideTheCell) {
    const QQuickItem& cell = find(Spoken::Button, QStringLiteral("Channel 3, select solo"));
    const QColor bare = at(cell, {40, 0});
    tabTo(QStringLiteral("Channel 1, select solo"));
    key(Qt::Key_Right);
    EXPECT_EQ(at(cell, {40, 0}), bare);
    key(Qt::Key_Right);
    EXPECT_EQ(at(cell, {40, 0}), QColor(230, 196, 28));
    key(Qt::Key_Space);
    // Dark between the ring and the fill.
    EXPECT_EQ(at(cell, {40, 1}), QColor(17, 18, 16));
    EXPECT_EQ(at(cell, {40, 4}), QColor(230, 196, 28));
}

}
}
