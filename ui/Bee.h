#pragma once

#include <QtCore/QObject>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

namespace tallyvox {

/// The palette: four opaque sRGB colours. Every other shade of the window is one of them with its
/// alpha multiplied.
class Bee : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor yellow READ yellow CONSTANT FINAL)
    Q_PROPERTY(QColor background READ background CONSTANT FINAL)
    Q_PROPERTY(QColor panel READ panel CONSTANT FINAL)
    Q_PROPERTY(QColor muted READ muted CONSTANT FINAL)

public:
    using QObject::QObject;

    /// The accent: title, outlines, selected and prominent fills, check-box symbols.
    static QColor yellow() { return QColor::fromRgbF(0.9F, 0.77F, 0.11F); }
    /// The window's own colour, and text on yellow.
    static QColor background() { return QColor::fromRgbF(0.065F, 0.069F, 0.063F); }
    /// The fill of the settings, of plain buttons and of idle cells.
    static QColor panel() { return QColor::fromRgbF(0.145F, 0.153F, 0.137F); }
    /// Secondary text.
    static QColor muted() { return QColor::fromRgbF(0.75F, 0.75F, 0.69F); }

    /// `colour` with its alpha multiplied by `opacity`.
    Q_INVOKABLE
    static QColor faded(QColor colour, float opacity) {
        colour.setAlphaF(colour.alphaF() * opacity);
        return colour;
    }
};

}
