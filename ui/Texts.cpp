#include "ui/Texts.h"

#include "base/checked.h"

using namespace Qt::StringLiterals;

namespace tallyvox {

QString Texts::output(const OutputDevice& device) {
    return u"%1 — %2 outputs"_s.arg(QString::fromStdString(device.name),
                                    QString::number(device.channels));
}

QString Texts::badge(bool running) { return running ? u"PLAYING"_s : u"STOPPED"_s; }

QString Texts::first(qlonglong channel) { return u"First: %1"_s.arg(channel); }

QString Texts::last(qlonglong channel) { return u"Last: %1"_s.arg(channel); }

QString Texts::mode(bool sequential) {
    return sequential ? u"One channel at a time"_s : u"All selected channels together"_s;
}

QString Texts::level(double db) { return u"%1 dBFS"_s.arg(checkedTruncate(db)); }

QString Texts::gap(double seconds) { return u"%1 sec"_s.arg(seconds, 0, 'f', 1); }

QString Texts::range(qlonglong first, qlonglong last) {
    return u"CHANNELS %1–%2"_s.arg(first).arg(last);
}

QString Texts::hint(bool sequential) {
    return sequential ? u"Cycles in order, then repeats"_s : u"Click a channel to solo it"_s;
}

QString Texts::announcement(bool sequential, qlonglong solo, qlonglong first, qlonglong last) {
    if (sequential) {
        return u"Channels %1 → %2 → repeat"_s.arg(first).arg(last);
    }
    if (solo >= 1) {
        return u"Only channel %1 will play"_s.arg(solo);
    }
    return u"Channel 1 → one  ·  Channel 2 → two"_s;
}

QString Texts::cellNumber(qlonglong channel) { return u"%1"_s.arg(channel, 2, 10, QChar(u'0')); }

QString Texts::cellCaption(qlonglong channel, bool soloed) {
    return soloed ? u"SOLO"_s : u"CH %1"_s.arg(channel);
}

QString Texts::cellLabel(qlonglong channel, bool soloed) {
    return u"Channel %1, %2"_s.arg(QString::number(channel),
                                   soloed ? u"solo selected"_s : u"select solo"_s);
}

QString Texts::checked(bool on) { return on ? u"Checked"_s : u"Unchecked"_s; }

}
