#pragma once

#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

namespace tallyvox {

/// One of the small drawings of the controls, scaled to the item, in one colour.
class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Kind kind MEMBER kind_ NOTIFY changed FINAL)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed FINAL)

public:
    enum Kind {
        Square,          ///< an outlined square with round corners
        CheckmarkSquare, ///< the same square filled, a check mark cut out of it
        Checkmark,
        ChevronUp,
        ChevronDown,
    };
    Q_ENUM(Kind)

    explicit Symbol(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    Kind kind_ = Square;
    QColor color_ = Qt::black;
};

}
