#include "ui/Range.h"

#include "base/checked.h"

#include <algorithm>

namespace tallyvox {

qlonglong Range::moved(qlonglong value, qlonglong by) const {
    return std::min(std::max<qlonglong>(checkedAdd(value, by), least), most);
}

Range Range::first(qlonglong last) { return {1, std::max(last, 1LL)}; }

Range Range::last(qlonglong first, qlonglong channels) {
    return {std::max(first, 1LL), std::max(std::min(channels, 128LL), first)};
}

}
