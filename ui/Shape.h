#pragma once

#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

namespace tallyvox {

/// A filled and outlined rectangle with continuous corners. It lies `Margin` points inside the
/// item's bounds: the outline is one point wide and centred on the rectangle's edge, so that its
/// outer half needs room. Where the shape is `clipped` only the outline's inner half is drawn.
class Shape : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY changed FINAL)
    Q_PROPERTY(QColor fill MEMBER fill_ NOTIFY changed FINAL)
    Q_PROPERTY(QColor outline MEMBER outline_ NOTIFY changed FINAL)
    Q_PROPERTY(qreal lineWidth MEMBER lineWidth_ NOTIFY changed FINAL)
    Q_PROPERTY(bool clipped MEMBER clipped_ NOTIFY changed FINAL)

public:
    enum Room { Margin = 1 };
    Q_ENUM(Room)

    explicit Shape(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    qreal radius_ = 0;
    QColor fill_ = Qt::transparent;
    QColor outline_ = Qt::transparent;
    qreal lineWidth_ = 1;
    bool clipped_ = false;
};

}
