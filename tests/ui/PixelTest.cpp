#include "tests/ui/Screen.h"

#include <QtTest/QTest>

#include <algorithm>
#include <map>

namespace tallyvox {
namespace {

// The palette in 8 bits, rounded to the nearest.
const QColor yellow(230, 196, 28);
const QColor background(17, 18, 16);
const QColor panel(37, 39, 35);
const QColor muted(191, 191, 176);

QColor over(QColor upper, QColor lower, double opacity) {
    const auto mix = [opacity](int a, int b) {
        return static_cast<int>(std::lround(a * opacity + b * (1 - opacity)));
    };
    return QColor(mix(upper.red(), lower.red()), mix(upper.green(), lower.green()),
                  mix(upper.blue(), lower.blue()));
}

testing::AssertionResult near(QColor seen, QColor wanted) {
    const int off =
        std::max({std::abs(seen.red() - wanted.red()), std::abs(seen.green() - wanted.green()),
                  std::abs(seen.blue() - wanted.blue())});
    if (off <= 2)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << seen.name().toStdString() << " instead of " << wanted.name().toStdString();
}

/// What is drawn where.
class Pixels : public Screen {
protected:
    void SetUp() override {
        addOutput(7, "Dante Virtual Soundcard", 64);
        open();
    }

    QQuickItem& button(const char* name) { return find(Spoken::Button, QString::fromUtf8(name)); }
    QQuickItem& cell(const char* name) { return button(name); }

    /// The colours inside an item, most frequent first.
    std::vector<QColor> colours(const QQuickItem& item) {
        const QImage seen = picture().copy(place(item).toAlignedRect());
        std::map<QRgb, int> counts;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x)
                ++counts[seen.pixel(x, y)];
        }
        std::vector<std::pair<QRgb, int>> sorted(counts.begin(), counts.end());
        std::sort(sorted.begin(), sorted.end(),
                  [](const auto& a, const auto& b) { return a.second > b.second; });
        std::vector<QColor> found;
        found.reserve(sorted.size());
        for (const auto& [colour, count] : sorted)
            found.emplace_back(colour);
        return found;
    }
    /// The fill of an item.
    QColor fill(const QQuickItem& item) { return colours(item).front(); }
    /// Whether the ink of a text, undiluted in the middle of its strokes, is drawn in an item.
    bool has(const QQuickItem& item, QColor ink) {
        const auto found = colours(item);
        return std::any_of(found.begin(), found.end(), [&](QColor c) { return near(c, ink); });
    }
    QQuickItem& text(const char* name) { return find(Spoken::Text, QString::fromUtf8(name)); }
};

TEST_F(Pixels, TheGroundAndThePanelHaveTheirColours) {
    EXPECT_EQ(at({5, 5}), background);
    EXPECT_EQ(at({795, 795}), background);
    EXPECT_EQ(at({400, 135}), panel);
}

TEST_F(Pixels, TextsHaveTheirColours) {
    EXPECT_TRUE(has(find(Spoken::Heading, QStringLiteral("TALLYVOX")), yellow));
    EXPECT_TRUE(has(text("STOPPED"), muted));
    EXPECT_TRUE(has(text("CHANNELS 1–8"), yellow));
    EXPECT_TRUE(has(text("ORBELKNOLL"), yellow));
    for (const char* name :
         {"Every output speaks its own number.", "Click a channel to solo it",
          "All selected channels together", "V3", "Stopped. Choose an output and press Start."}) {
        EXPECT_FALSE(has(text(name), yellow)) << name;
        EXPECT_FALSE(has(text(name), Qt::white)) << name;
    }
    model().setRunning(true);
    EXPECT_TRUE(has(text("PLAYING"), yellow));
}

TEST_F(Pixels, TheBadgeIsAnOutlineOfFourTenthsWithoutAFill) {
    const QQuickItem& words = text("STOPPED");
    // On the outline's two rows half a point each is covered.
    EXPECT_TRUE(near(at(words, {20, -8}), over(yellow, background, 0.2)));
    EXPECT_TRUE(near(at(words, {20, -9}), over(yellow, background, 0.2)));
    EXPECT_EQ(at(words, {20, -5}), background);
    EXPECT_EQ(at(words, {-6, words.height() / 2}), background);
}

TEST_F(Pixels, ThePanelHasAnOutlineOfAQuarterAndCornersOf12) {
    const QQuickItem& refresh = button("Refresh");
    const int top = static_cast<int>(place(refresh).top()) - 20;
    EXPECT_TRUE(near(at(QPointF(400, top)), over(yellow, panel, 0.125)));
    EXPECT_TRUE(near(at(QPointF(400, top - 1)), over(yellow, background, 0.125)));
    EXPECT_TRUE(near(at(QPointF(28, top + 60)), over(yellow, panel, 0.125)));
    EXPECT_EQ(at(QPointF(28, top)), background);
    // A continuous corner leaves the edge about one and a half radii before its end.
    EXPECT_TRUE(near(at(QPointF(28 + 19, top)), over(yellow, panel, 0.125)));
    EXPECT_FALSE(near(at(QPointF(28 + 8, top)), over(yellow, panel, 0.125)));
    // On the diagonal it lies where a circle does: 0.29 radii inside.
    EXPECT_NE(at(QPointF(28 + 5, top + 5)), background);
    EXPECT_EQ(at(QPointF(28 + 1, top + 1)), background);
}

TEST_F(Pixels, AProminentButtonIsYellowWithDarkTextAndNoOutline) {
    const QQuickItem& start = button("Start announcing");
    EXPECT_EQ(fill(start), yellow);
    EXPECT_TRUE(has(start, background));
    EXPECT_EQ(at(start, {60, 0}), yellow);
    EXPECT_EQ(at(start, {60, -1}), background);
    EXPECT_EQ(at(start, {0, 0}), background);
}

TEST_F(Pixels, APlainButtonIsAPanelWithYellowTextAndAHalfTransparentOutline) {
    const QQuickItem& refresh = button("Refresh");
    EXPECT_EQ(fill(refresh), panel);
    EXPECT_TRUE(has(refresh, yellow));
    // Clipped: the outline's inner half alone.
    EXPECT_TRUE(near(at(refresh, {40, 0}), over(yellow, panel, 0.25)));
    EXPECT_EQ(at(refresh, {40, -1}), panel);
}

TEST_F(Pixels, AHeldButtonIsAtSevenTenths) {
    for (const auto& [name, ground] :
         {std::pair{"Start announcing", background}, {"Refresh", panel}}) {
        const QQuickItem& held = button(name);
        const QColor before = fill(held);
        press(held);
        EXPECT_TRUE(near(fill(held), over(before, ground, 0.7))) << name;
        if (before == panel)
            EXPECT_TRUE(has(held, over(yellow, ground, 0.7)));
        else
            EXPECT_TRUE(has(held, over(background, ground, 0.7)));
        // Let go outside: nothing else happens.
        QTest::mouseMove(&window(), QPoint(5, 5));
        QTest::mouseRelease(&window(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        EXPECT_EQ(fill(held), before) << name;
    }
    EXPECT_FALSE(model().busy());
}

TEST_F(Pixels, DisabledStartAndStopAreDimmed) {
    EXPECT_TRUE(near(fill(button("Stop")), over(panel, background, 0.4)));
    EXPECT_TRUE(has(button("Stop"), over(yellow, background, 0.4)));
    EXPECT_EQ(fill(button("Start announcing")), yellow);
    model().setRunning(true);
    EXPECT_TRUE(near(fill(button("Start announcing")), over(yellow, background, 0.45)));
    EXPECT_EQ(fill(button("Stop")), panel);
    EXPECT_TRUE(has(button("Stop"), yellow));
}

TEST_F(Pixels, AnIdleCellIsAPanelWithYellowTextAndAnOutlineOfThreeTenths) {
    const QQuickItem& idle = cell("Channel 3, select solo");
    EXPECT_EQ(fill(idle), panel);
    EXPECT_TRUE(has(idle, yellow));
    EXPECT_TRUE(near(at(idle, {40, 0}), over(yellow, panel, 0.15)));
    EXPECT_TRUE(near(at(idle, {40, -1}), over(yellow, background, 0.15)));
    EXPECT_EQ(at(idle, {0, 0}), background);
    EXPECT_TRUE(near(at(idle, {13, 0}), over(yellow, panel, 0.15)));
    EXPECT_FALSE(near(at(idle, {5, 0}), over(yellow, panel, 0.15)));
}

TEST_F(Pixels, ASoloedCellIsYellowAndTheOthersAreAtFourTenths) {
    click(cell("Channel 3, select solo"));
    const QQuickItem& soloed = cell("Channel 3, solo selected");
    EXPECT_EQ(fill(soloed), yellow);
    EXPECT_TRUE(has(soloed, background));
    EXPECT_TRUE(near(at(soloed, {40, -1}), over(yellow, background, 0.5)));
    for (const char* name : {"Channel 1, select solo", "Channel 2, select solo",
                             "Channel 4, select solo", "Channel 8, select solo"}) {
        const QQuickItem& dimmed = cell(name);
        EXPECT_TRUE(near(fill(dimmed), over(panel, background, 0.4))) << name;
        EXPECT_TRUE(has(dimmed, over(yellow, background, 0.4))) << name;
        EXPECT_TRUE(near(at(dimmed, {40, 0}), over(over(yellow, panel, 0.15), background, 0.4)))
            << name;
    }
    click(soloed);
    EXPECT_EQ(fill(cell("Channel 3, select solo")), panel);
    EXPECT_EQ(fill(cell("Channel 1, select solo")), panel);
    EXPECT_TRUE(said(Spoken::Text).contains(QStringLiteral("Channel 1 → one  ·  Channel 2 → two")));
}

TEST_F(Pixels, ADisabledCellLooksAsBefore) {
    const QColor before = fill(cell("Channel 1, select solo"));
    model().setSequential(true);
    EXPECT_EQ(fill(cell("Channel 1, select solo")), before);
}

TEST_F(Pixels, ACheckBoxIsAYellowSquareThatFills) {
    const QQuickItem& box = find(Spoken::CheckBox, QStringLiteral("Announce Numerically"));
    const auto symbol = [&](double x, double y) { return at(box, {x, 6 + y}); };
    EXPECT_EQ(symbol(10, 1), yellow);
    EXPECT_EQ(symbol(10, 10), panel);
    EXPECT_EQ(symbol(4, 4), panel);
    EXPECT_TRUE(has(box, Qt::white));
    model().setSequential(true);
    EXPECT_EQ(symbol(4, 4), yellow);
    EXPECT_EQ(symbol(10, 1), yellow);
    // The check mark is cut out of the fill.
    EXPECT_FALSE(near(symbol(8, 12), yellow));
    EXPECT_EQ(symbol(16, 16), yellow);
}

TEST_F(Pixels, ACheckBoxFlipsOnceWhereverItsRowIsClicked) {
    const QQuickItem& box = find(Spoken::CheckBox, QStringLiteral("Announce Numerically"));
    bool on = false;
    for (const QPointF& point : {QPointF(1, 1), QPointF(24, 16), QPointF(24, 1), QPointF(24, 30),
                                 QPointF(100, 16), QPointF(box.width() - 2, 30)}) {
        click(box, point);
        on = !on;
        EXPECT_EQ(model().sequential(), on) << point.x() << " " << point.y();
    }
    click(box, {24, -2});
    click(box, {24, 34});
    click(box, {-3, 16});
    EXPECT_EQ(model().sequential(), on);
}

TEST_F(Pixels, AStepperShowsWhichWayItGoesAlsoWhileItIsDisabled) {
    const QQuickItem& first = find(Spoken::Stepper, QStringLiteral("First: 1"));
    // The brightest of an arrow, through its tip.
    const auto arrow = [&](int from) {
        int most = 0;
        for (int y = from; y < from + 9; ++y)
            most = std::max(most, at(first, QPointF(first.width() - 9, y)).red());
        return most;
    };
    const auto up = [&] { return arrow(2); };
    const auto down = [&] { return arrow(15); };
    const int before = up();
    EXPECT_GT(before, down() + 60);
    model().setRunning(true);
    EXPECT_LT(up(), before - 60);
    EXPECT_GT(up(), down() + 25);
}

TEST_F(Pixels, SlidersAreYellowUpToTheirHandles) {
    const QQuickItem& level = find(Spoken::Slider, QStringLiteral("Peak level"));
    EXPECT_EQ(at(level, {20, 10}), yellow);
    EXPECT_NE(at(level, {level.width() - 20, 10}), yellow);
    model().setDb(-6);
    EXPECT_EQ(at(level, {level.width() - 30, 10}), yellow);
}

TEST_F(Pixels, TheSameWindowIsDrawnTheSameTwice) { EXPECT_EQ(picture(), picture()); }

TEST_F(Pixels, ClicksDriveTheModel) {
    const QQuickItem& last = find(Spoken::Stepper, QStringLiteral("Last: 8"));
    click(last, {last.width() - 9, 7});
    EXPECT_EQ(model().last(), 9);
    click(last, {last.width() - 9, last.height() - 7});
    EXPECT_EQ(model().last(), 8);
    const QQuickItem& gap = find(Spoken::Slider, QStringLiteral("Repeat gap"));
    click(gap, {gap.width() - 10, 10});
    EXPECT_EQ(model().gap(), 3.0);
    click(gap, {10, 10});
    EXPECT_EQ(model().gap(), 0.2);
    EXPECT_TRUE(said(Spoken::Text).contains(QStringLiteral("0.2 sec")));
    click(button("Refresh"));
    EXPECT_EQ(model().status(), QStringLiteral("Stopped."));
    click(button("Start announcing"));
    until([this] { return model().running(); });
    EXPECT_EQ(model().status(), QStringLiteral("Playing to Dante Virtual Soundcard · 48000 Hz"));
    EXPECT_TRUE(said(Spoken::Text).contains(model().status()));
    click(button("Stop"));
    EXPECT_FALSE(model().running());
}

}
}
