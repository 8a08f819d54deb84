#pragma once

#include <QtCore/QObject>
#include <QtGui/QFont>
#include <QtQml/qqmlregistration.h>

namespace tallyvox {

/// The fonts of the window, compiled into the program: one family for each design, and the sizes
/// of the named text styles in points (a point is a device-independent pixel).
class Typeface : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    enum Size { Caption = 10, Subheadline = 11, Callout = 12, Body = 13, Title3 = 15 };
    Q_ENUM(Size)

    /// Makes the fonts known to the toolkit; call once, after the application object exists.
    static void load();

    /// The default design.
    Q_INVOKABLE
    static QFont plain(int points, int weight = QFont::Normal);
    /// The default design at regular weight with digits of equal width.
    Q_INVOKABLE
    static QFont digits(int points);
    /// The monospaced design; semibold and bold.
    Q_INVOKABLE
    static QFont monospaced(int points, int weight);
    /// The rounded design, bold.
    Q_INVOKABLE
    static QFont rounded(int points);
};

}
