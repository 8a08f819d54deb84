#include "ui/Typeface.h"

#include "base/fatal.h"

#include <QtGui/QFontDatabase>

namespace tallyvox {

namespace {

QFont cut(const char* family, int points, int weight) {
    QFont font(QString::fromLatin1(family));
    font.setPixelSize(points);
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

}

void Typeface::load() {
    for (const char* file : {"sans-regular", "sans-medium", "sans-semibold", "digits-regular",
                             "mono-semibold", "mono-bold", "rounded-bold"}) {
        const auto path = QStringLiteral(":/tallyvox/fonts/%1.ttf").arg(QLatin1String(file));
        require(QFontDatabase::addApplicationFont(path) >= 0);
    }
}

QFont Typeface::plain(int points, int weight) { return cut("Tallyvox Sans", points, weight); }

QFont Typeface::digits(int points) { return cut("Tallyvox Digits", points, QFont::Normal); }

QFont Typeface::monospaced(int points, int weight) { return cut("Tallyvox Mono", points, weight); }

QFont Typeface::rounded(int points) { return cut("Tallyvox Rounded", points, QFont::Bold); }

}
