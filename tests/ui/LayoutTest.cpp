#include "tests/ui/Screen.h"
#include "ui/Shape.h"
#include "ui/Typeface.h"

#include <QtGui/QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace tallyvox {
namespace {

int shapes(const QQuickItem& item) {
    int count = qobject_cast<const Shape*>(&item) != nullptr ? 1 : 0;
    for (const QQuickItem* child : item.childItems())
        count += shapes(*child);
    return count;
}

/// Where things lie. Places are told by what is said there, edges by what is drawn.
class Layout : public Screen {
protected:
    void SetUp() override {
        addOutput(7, "Dante Virtual Soundcard", 64);
        open();
    }

    QRectF text(const char* name) { return place(find(Spoken::Text, QString::fromUtf8(name))); }
    QRectF button(const char* name) { return place(find(Spoken::Button, QString::fromUtf8(name))); }
    QRectF box(const char* name) { return place(find(Spoken::CheckBox, QString::fromUtf8(name))); }
    QRectF slider(const char* name) { return place(find(Spoken::Slider, QString::fromUtf8(name))); }
    QRectF stepper(const char* name) {
        return place(find(Spoken::Stepper, QString::fromUtf8(name)));
    }
    QRectF title() { return place(find(Spoken::Heading, QStringLiteral("TALLYVOX"))); }
    QRectF picker() { return place(find(Spoken::Picker, QStringLiteral("Output device"))); }
    QRectF grid() { return place(find(Spoken::List, QStringLiteral("Channels"))); }
    QRectF cell(int channel) {
        return place(find(Spoken::Button, QStringLiteral("Channel %1, select solo").arg(channel)));
    }

    /// The settings panel, found by its fill along a line through its left padding.
    QRectF panel() {
        const QImage seen = picture();
        const QColor fill(37, 39, 35);
        const auto isPanel = [&](int x, int y) { return seen.pixelColor(x, y) == fill; };
        int top = 0;
        while (!isPanel(50, top))
            ++top;
        int bottom = top;
        while (isPanel(40, bottom))
            ++bottom;
        int left = 0;
        while (!isPanel(left, top + 40))
            ++left;
        int right = seen.width() - 1;
        while (!isPanel(right, top + 40))
            --right;
        // The outline's inner half covers the outermost pixel of the fill.
        return QRectF(QPointF(left - 1, top - 1), QPointF(right + 2, bottom + 1));
    }
};

TEST_F(Layout, EverythingLies28PointsFromTheEdges) {
    EXPECT_EQ(title().topLeft(), QPointF(28, 28));
    EXPECT_EQ(panel().left(), 28);
    EXPECT_EQ(panel().right(), 772);
    EXPECT_EQ(grid().left(), 28);
    EXPECT_EQ(grid().right(), 772);
    EXPECT_EQ(text("V3").right(), 772);
    EXPECT_EQ(std::max(text("V3").bottom(), text("ORBELKNOLL").bottom()), 772);
}

TEST_F(Layout, RowsOfTheWindowAre20PointsApart) {
    const QRectF header = title().united(text("STOPPED").adjusted(0, -8, 0, 8));
    const QRectF subtitle = text("Every output speaks its own number.");
    EXPECT_EQ(subtitle.top() - header.bottom(), 20);
    EXPECT_EQ(panel().top() - subtitle.bottom(), 20);
    const QRectF channels = text("CHANNELS 1–8").united(text("Click a channel to solo it"));
    EXPECT_EQ(channels.top() - panel().bottom(), 20);
    EXPECT_EQ(grid().top() - channels.bottom(), 20);
    const QRectF status = text("Stopped. Choose an output and press Start.");
    EXPECT_EQ(status.top() - grid().bottom(), 20);
    EXPECT_EQ(button("Start announcing").top() - status.bottom(), 20);
    const QRectF footer = text("V3").united(text("ORBELKNOLL"));
    EXPECT_EQ(footer.top() - button("Start announcing").bottom(), 20 + 1 + 20);
    const QImage seen = picture();
    const QColor line = seen.pixelColor(QPoint(400, static_cast<int>(footer.top()) - 21));
    EXPECT_NEAR(line.red(), 0.7 * 17 + 0.3 * 230, 1.5);
    EXPECT_EQ(seen.pixelColor(28, static_cast<int>(footer.top()) - 21), line);
    EXPECT_EQ(seen.pixelColor(771, static_cast<int>(footer.top()) - 21), line);
    EXPECT_NE(seen.pixelColor(27, static_cast<int>(footer.top()) - 21), line);
    EXPECT_NE(seen.pixelColor(772, static_cast<int>(footer.top()) - 21), line);
}

TEST_F(Layout, RowsOfThePanelAre18PointsApartWith20AllAround) {
    EXPECT_EQ(button("Refresh").top() - panel().top(), 20);
    EXPECT_EQ(panel().right() - button("Refresh").right(), 20);
    EXPECT_EQ(text("Output device").left() - panel().left(), 20);
    const QRectF range = box("All Channels");
    EXPECT_EQ(range.top() - button("Refresh").bottom(), 18);
    const QRectF mode = box("Announce Numerically");
    EXPECT_EQ(mode.top() - range.bottom(), 18);
    const QRectF level = slider("Peak level").united(text("Peak level"));
    EXPECT_EQ(level.top() - mode.bottom(), 18 + 1 + 18);
    const QRectF gap = slider("Repeat gap").united(text("Repeat gap"));
    EXPECT_EQ(gap.top() - level.bottom(), 18);
    EXPECT_EQ(panel().bottom() - gap.bottom(), 20);
    const QColor line = at(QPointF(400, mode.bottom() + 18));
    EXPECT_NEAR(line.red(), 0.82 * 37 + 0.18 * 230, 1.5);
}

TEST_F(Layout, TheRangeRowHas24PointsBetweenItsItemsTheOthers8) {
    EXPECT_EQ(stepper("Last: 8").left() - stepper("First: 1").right(), 24);
    EXPECT_EQ(button("Refresh").left() - picker().right(), 8);
    EXPECT_EQ(button("Stop").left() - button("Start announcing").right(), 8);
}

TEST_F(Layout, RowsAreCentredVertically) {
    const auto middle = [](QRectF place) { return place.center().y(); };
    EXPECT_NEAR(middle(picker()), middle(button("Refresh")), 0.5);
    EXPECT_NEAR(middle(text("Output device")), middle(button("Refresh")), 0.5);
    EXPECT_NEAR(middle(stepper("First: 1")), middle(box("All Channels")), 0.5);
    EXPECT_NEAR(middle(text("-24 dBFS")), middle(slider("Peak level")), 0.5);
    EXPECT_NEAR(middle(text("STOPPED")), middle(title()), 0.5);
}

TEST_F(Layout, NamesAndValuesOfTheSlidersAre85PointsWide) {
    for (const char* name : {"Peak level", "Repeat gap", "-24 dBFS", "0.7 sec"})
        EXPECT_EQ(text(name).width(), 85) << name;
    EXPECT_EQ(text("Peak level").left(), 48);
    EXPECT_EQ(text("-24 dBFS").right(), 752);
}

TEST_F(Layout, TheBadgeIsPaddedBy12And8) {
    const QRectF words = text("STOPPED");
    EXPECT_NEAR(words.right() + 12, 772, 0.5);
    // The capsule's outline, a point wide and centred on the padding's edge.
    const QImage seen = picture();
    const int middle = static_cast<int>(words.center().x());
    EXPECT_GT(seen.pixelColor(middle, static_cast<int>(words.top()) - 8).red(), 30);
    EXPECT_GT(seen.pixelColor(middle, static_cast<int>(words.bottom()) + 8).red(), 30);
    EXPECT_EQ(seen.pixelColor(middle, static_cast<int>(words.top()) - 6).red(), 17);
}

TEST_F(Layout, ButtonsArePaddedBy18And12AroundTheirText) {
    const QFontMetricsF text(Typeface::plain(14, QFont::DemiBold));
    for (const char* name : {"Start announcing", "Stop", "Refresh"}) {
        const QRectF drawn = button(name);
        EXPECT_NEAR(drawn.width(), text.horizontalAdvance(QString::fromUtf8(name)) + 36, 1) << name;
        EXPECT_NEAR(drawn.height(), text.height() + 24, 1) << name;
    }
}

TEST_F(Layout, CheckBoxesHaveA20PointSymbolAGapOf8AndPaddingsOf6) {
    const QFontMetricsF text(Typeface::plain(14, QFont::Medium));
    const QRectF drawn = box("Announce Numerically");
    EXPECT_EQ(drawn.height(), 6 + 20 + 6);
    EXPECT_NEAR(drawn.width(),
                20 + 8 + text.horizontalAdvance(QStringLiteral("Announce Numerically")), 1);
    EXPECT_EQ(drawn.left(), 48);
    EXPECT_EQ(box("All Channels").right(), 752);
}

TEST_F(Layout, CellsLieInEightEqualColumns8PointsApart) {
    model().setLast(24);
    picture();
    for (int channel = 1; channel <= 24; ++channel) {
        const QRectF drawn = cell(channel);
        const int row = (channel - 1) / 8;
        EXPECT_EQ(drawn.size(), QSizeF(86, 66)) << channel;
        EXPECT_EQ(drawn.left(), 28 + (channel - 1) % 8 * 94) << channel;
        EXPECT_EQ(drawn.top(), grid().top() + row * 74) << channel;
    }
}

TEST_F(Layout, CellsStayOnWholePixelsAtEveryWidth) {
    for (int width : {741, 743, 746, 801, 1234}) {
        window().resize(width, 800);
        picture();
        for (int channel = 1; channel <= 8; ++channel) {
            const QRectF drawn = cell(channel);
            EXPECT_EQ(drawn.left(), std::round(drawn.left()));
            EXPECT_NEAR(drawn.width(), (width - 56 - 7 * 8) / 8.0, 1);
            if (channel > 1) {
                EXPECT_EQ(drawn.left() - cell(channel - 1).right(), 8);
            }
        }
        EXPECT_EQ(cell(8).right(), width - 28);
    }
}

TEST_F(Layout, TheGridTakesAllTheHeightThatIsLeft) {
    const qreal before = grid().height();
    window().resize(800, 1000);
    picture();
    EXPECT_EQ(grid().height(), before + 200);
    window().resize(740, window().minimumHeight());
    picture();
    EXPECT_GE(grid().height(), 150);
}

TEST_F(Layout, ThereIsAScrollBarWhereThereIsMoreToSee) {
    const auto bar = [this] {
        return at(QPointF(grid().right() + 14, grid().top() + 10)) != QColor(17, 18, 16);
    };
    EXPECT_FALSE(bar());
    model().setLast(64);
    EXPECT_TRUE(bar());
}

TEST_F(Layout, TheGridNeverHoldsMoreThan128Cells) {
    addOutput(9, "Wall", 200);
    model().refresh();
    model().setSelected(9);
    model().setAllChannels(true);
    picture();
    const auto cells = [this] { return said(Spoken::Button).filter(QStringLiteral("Channel ")); };
    until([&] { return cells().size() == 128; });
    EXPECT_TRUE(said(Spoken::Text).contains(QStringLiteral("CHANNELS 1–128")));
}

TEST_F(Layout, OnlyCellsInSightAreDrawn) {
    model().setLast(64);
    until([this] { return said(Spoken::Button).contains(u"Channel 64, select solo"); });
    picture();
    const int drawn = shapes(find(Spoken::List, QStringLiteral("Channels")));
    EXPECT_GE(drawn, 16);
    EXPECT_LE(drawn, 40);
}

TEST_F(Layout, WithTheLastBelowTheFirstTheGridShowsTheFirstAlone) {
    model().setFirst(5);
    model().setLast(2);
    picture();
    EXPECT_EQ(said(Spoken::Button).filter(QStringLiteral("Channel ")),
              QStringList{QStringLiteral("Channel 5, select solo")});
    EXPECT_TRUE(said(Spoken::Text).contains(QStringLiteral("CHANNELS 5–2")));
}

}
}
