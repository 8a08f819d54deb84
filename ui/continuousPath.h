#pragma once

#include <QtCore/QRectF>
#include <QtGui/QPainterPath>

namespace tallyvox {

/// `rect` with continuous corners of `radius`: each corner is one Bézier curve that leaves the edge
/// 1.5286 radii before the corner and has its middle where a circle's would be. Where a side is too
/// short for that the curves tighten; at half the shorter side they are quarter circles.
QPainterPath continuousPath(const QRectF& rect, qreal radius);

}
