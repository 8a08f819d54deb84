#include "ui/Shape.h"

#include "ui/continuousPath.h"

#include <QtGui/QPainter>

namespace tallyvox {

Shape::Shape(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Shape::changed, this, [this] { update(); });
}

void Shape::paint(QPainter* painter) {
    const qreal margin = Margin;
    const QRectF bounds(margin, margin, width() - 2 * margin, height() - 2 * margin);
    const QPainterPath path = continuousPath(bounds, radius_);
    painter->fillPath(path, fill_);
    if (outline_.alpha() == 0) {
        return;
    }
    QPen pen(outline_, lineWidth_, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setMiterLimit(10);
    if (clipped_) {
        QPainterPathStroker stroker(pen);
        painter->fillPath(stroker.createStroke(path).intersected(path), outline_);
    } else {
        painter->strokePath(path, pen);
    }
}

}
