#include "ui/continuousPath.h"

#include <algorithm>
#include <numbers>

namespace tallyvox {

QPainterPath continuousPath(const QRectF& rect, qreal radius) {
    const qreal half = std::min(rect.width(), rect.height()) / 2;
    const qreal r = std::clamp(radius, 0.0, half);
    const qreal reach = std::min(1.5286 * r, half);
    // The curve's middle, (reach + 3 pull) / 8 from either edge, lies on the circle.
    const qreal pull = (8 * (1 - 1 / std::numbers::sqrt2) * r - reach) / 3;

    const qreal left = rect.left();
    const qreal top = rect.top();
    const qreal right = rect.right();
    const qreal bottom = rect.bottom();
    QPainterPath path(QPointF(left + reach, top));
    path.lineTo(right - reach, top);
    path.cubicTo(right - pull, top, right, top + pull, right, top + reach);
    path.lineTo(right, bottom - reach);
    path.cubicTo(right, bottom - pull, right - pull, bottom, right - reach, bottom);
    path.lineTo(left + reach, bottom);
    path.cubicTo(left + pull, bottom, left, bottom - pull, left, bottom - reach);
    path.lineTo(left, top + reach);
    path.cubicTo(left, top + pull, left + pull, top, left + reach, top);
    path.closeSubpath();
    return path;
}

}
