#pragma once

#include "audio/devices.h"

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace tallyvox {

/// Every text of the window that is made of values.
class Texts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// "Dante Virtual Soundcard — 64 outputs"
    static QString output(const OutputDevice& device);

    /// "PLAYING" or "STOPPED"
    Q_INVOKABLE
    static QString badge(bool running);

    /// "First: 1"
    Q_INVOKABLE
    static QString first(qlonglong channel);

    /// "Last: 8"
    Q_INVOKABLE
    static QString last(qlonglong channel);

    /// "One channel at a time" or "All selected channels together"
    Q_INVOKABLE
    static QString mode(bool sequential);

    /// "-24 dBFS": whole decibels, truncated toward zero.
    Q_INVOKABLE
    static QString level(double db);

    /// "0.7 sec"
    Q_INVOKABLE
    static QString gap(double seconds);

    /// "CHANNELS 1–8"
    Q_INVOKABLE
    static QString range(qlonglong first, qlonglong last);

    /// What a click on the grid does in the chosen mode.
    Q_INVOKABLE
    static QString hint(bool sequential);

    /// What will be heard: "Channels 1 → 8 → repeat", "Only channel 3 will play", or an example.
    Q_INVOKABLE
    static QString announcement(bool sequential, qlonglong solo, qlonglong first, qlonglong last);

    /// "03": the number of a cell, two digits at least.
    static QString cellNumber(qlonglong channel);

    /// "CH 3" or "SOLO"
    static QString cellCaption(qlonglong channel, bool soloed);

    /// "Channel 3, select solo": the name of a cell for assistive technology.
    static QString cellLabel(qlonglong channel, bool soloed);

    /// "Checked" or "Unchecked": the state of a check box for assistive technology.
    Q_INVOKABLE
    static QString checked(bool on);
};

}
