#include "model/range.h"

#include "base/fatal.h"

#include <algorithm>

namespace tallyvox {

std::int64_t rangeCeiling(std::int64_t channels) noexcept {
    return bounded(channels, 1, kLargestChannel);
}

std::int64_t bounded(std::int64_t value, std::int64_t low, std::int64_t ceiling) noexcept {
    return std::min(std::max(value, low), ceiling);
}

bool isPlayable(std::int64_t first, std::int64_t last, std::int64_t solo,
                std::int64_t channels) noexcept {
    return first <= last && last <= std::min(channels, kLargestChannel) &&
           (solo == 0 || (first <= solo && solo <= last));
}

std::vector<bool> channelMask(std::int64_t first, std::int64_t last, std::int64_t solo,
                              bool sequential, std::int64_t channels) {
    require(channels >= 1 && first <= last);
    std::vector<bool> mask;
    for (std::int64_t c = 1; c <= std::min(channels, kLargestChannel); ++c)
        mask.push_back(first <= c && c <= last && (sequential || solo == 0 || solo == c));
    return mask;
}

}
