#include "ui/Symbol.h"

#include "ui/continuousPath.h"

#include <QtGui/QPainter>

namespace tallyvox {

namespace {

/// The outline that a round pen of `width` leaves along `line`.
QPainterPath drawn(const QPainterPath& line, qreal width) {
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(line);
}

QPainterPath polyline(const QPolygonF& points) {
    QPainterPath path;
    path.addPolygon(points);
    return path;
}

/// The symbol in a square of 20 by 20, the chevrons in one of 10 by 10.
QPainterPath symbol(Symbol::Kind kind) {
    const QPainterPath check = polyline({{5.9, 10.6}, {8.8, 13.6}, {14.1, 6.6}});
    switch (kind) {
    case Symbol::Square:
        return drawn(continuousPath({1.4, 1.4, 17.2, 17.2}, 3.6), 1.8);
    case Symbol::CheckmarkSquare:
        return continuousPath({0.5, 0.5, 19, 19}, 4.5).subtracted(drawn(check, 2));
    case Symbol::Checkmark:
        return drawn(check, 2);
    case Symbol::ChevronUp:
        return drawn(polyline({{2, 6.6}, {5, 3.8}, {8, 6.6}}), 1.7);
    case Symbol::ChevronDown:
        return drawn(polyline({{2, 3.4}, {5, 6.2}, {8, 3.4}}), 1.7);
    }
    return {};
}

qreal side(Symbol::Kind kind) {
    return kind == Symbol::ChevronUp || kind == Symbol::ChevronDown ? 10 : 20;
}

}

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Symbol::changed, this, [this] { update(); });
}

void Symbol::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->scale(width() / side(kind_), height() / side(kind_));
    painter->fillPath(symbol(kind_), color_);
}

}
