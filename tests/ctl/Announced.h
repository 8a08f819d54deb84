#pragma once

#include <cstdint>
#include <vector>

namespace tallyvox {

/// What an announcement with the companion's test recordings gives to each channel, computed from
/// the absolute number of the frame.
struct Announced {
    std::int64_t channels = 0;
    double rate = 0; ///< Hz
    double db = 0;
    double gap = 0; ///< seconds
    bool sequential = false;
    std::int64_t first = 1;
    std::int64_t last = 1;
    std::int64_t solo = 0;

    /// Frames of one repetition.
    std::int64_t cycle() const;

    /// The interleaved samples of `frames` frames from the first on.
    std::vector<float> samples(std::int64_t frames) const;
};

}
