#pragma once

#include <cstdint>
#include <vector>

namespace tallyvox {

/// The largest channel number served anywhere: recordings exist up to here.
inline constexpr std::int64_t kLargestChannel = 128;

/// The highest channel that a range may reach on an output of `channels`: 1 to 128, 1 also where
/// there is no output.
std::int64_t rangeCeiling(std::int64_t channels) noexcept;

/// `value` raised to at least `low`, then lowered to at most `ceiling`; the ceiling wins.
std::int64_t bounded(std::int64_t value, std::int64_t low, std::int64_t ceiling) noexcept;

/// Whether the range `first` to `last` with `solo` (0 for none) can be announced on an output of
/// `channels`. A `first` below 1 is not looked at.
bool isPlayable(std::int64_t first, std::int64_t last, std::int64_t solo,
                std::int64_t channels) noexcept;

/// A flag for each of the at most 128 channels of an output, index 0 for channel 1: whether it
/// announces. In turn (`sequential`) a solo is ignored. No channels and an inverted range are
/// fatal.
std::vector<bool> channelMask(std::int64_t first, std::int64_t last, std::int64_t solo,
                              bool sequential, std::int64_t channels);

}
