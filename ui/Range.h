#pragma once

#include <QtCore/QMetaType>
#include <QtQml/qqmlregistration.h>

namespace tallyvox {

/// The values that a stepper may take, both ends included.
class Range {
    Q_GADGET
    QML_VALUE_TYPE(range)
    Q_PROPERTY(qlonglong least MEMBER least FINAL)
    Q_PROPERTY(qlonglong most MEMBER most FINAL)

public:
    qlonglong least = 0;
    qlonglong most = 0;

    /// `value` moved by `by`, brought inside.
    qlonglong moved(qlonglong value, qlonglong by) const;

    /// What the first channel may be: 1 to the last, or 1 alone.
    static Range first(qlonglong last);

    /// What the last channel may be on an output of `channels` channels, of which 128 can speak:
    /// never below the first.
    static Range last(qlonglong first, qlonglong channels);

    bool operator==(const Range&) const = default;
};

}
