#include "ui/continuousPath.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tallyvox {
namespace {

const QRectF box(10, 20, 200, 100);

/// How far a point of the outline is from the corner's two edges, on the diagonal between them.
double inset(const QPainterPath& path) {
    double from = 0;
    double to = 50;
    for (int step = 0; step < 50; ++step) {
        const double middle = (from + to) / 2;
        (path.contains(box.topLeft() + QPointF(middle, middle)) ? to : from) = middle;
    }
    return to;
}

TEST(ContinuousPath, FillsItsRectangle) { EXPECT_EQ(continuousPath(box, 12).boundingRect(), box); }

TEST(ContinuousPath, HasNoCornersWithoutARadius) {
    EXPECT_TRUE(continuousPath(box, 0).contains(box.topLeft() + QPointF(0.01, 0.01)));
}

TEST(ContinuousPath, PassesWhereACircleWouldOnTheDiagonal) {
    for (const double radius : {5.0, 8.0, 12.0, 50.0})
        EXPECT_NEAR(inset(continuousPath(box, radius)), radius * (1 - std::sqrt(0.5)), 1e-6);
}

TEST(ContinuousPath, LeavesTheEdgeEarlierThanACircle) {
    const QPainterPath path = continuousPath(box, 12);
    const auto onEdge = [&](double x) { return path.contains(box.topLeft() + QPointF(x, 0.02)); };
    EXPECT_TRUE(onEdge(1.5286 * 12));
    EXPECT_FALSE(onEdge(12));
    QPainterPath circle;
    circle.addRoundedRect(box, 12, 12);
    EXPECT_TRUE(circle.contains(box.topLeft() + QPointF(12, 0.02)));
}

TEST(ContinuousPath, IsACapsuleAtHalfTheShorterSide) {
    const QPainterPath path = continuousPath(box, 1000);
    for (const double angle : {0.1, 0.4, 0.7, 1.2}) {
        const QPointF out(-std::cos(angle), -std::sin(angle));
        const QPointF centre = box.topLeft() + QPointF(50, 50);
        EXPECT_TRUE(path.contains(centre + out * 49.9)) << angle;
        EXPECT_FALSE(path.contains(centre + out * 50.1)) << angle;
    }
}

TEST(ContinuousPath, IsTheSameInEveryCorner) {
    const QPainterPath path = continuousPath(box, 20);
    for (int x = 0; x <= 30; ++x) {
        for (int y = 0; y <= 30; ++y) {
            const QPointF in(x + 0.5, y + 0.5);
            const bool inside = path.contains(box.topLeft() + in);
            EXPECT_EQ(path.contains(box.bottomRight() - in), inside);
            EXPECT_EQ(path.contains(box.topRight() + QPointF(-in.x(), in.y())), inside);
            EXPECT_EQ(path.contains(box.bottomLeft() + QPointF(in.x(), -in.y())), inside);
        }
    }
}

}
}
