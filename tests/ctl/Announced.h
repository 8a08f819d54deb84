#pragma once

#include <cstdint>
#include <vector>

namespace tallyvox {

/// What an announcement with the companion's test recordings gives to each channel, computed from
/// the absolute number of the frame.
struct Announced {
    std::int64_t channels;
    double rate; ///< Hz
    double db;
    double gap; ///< seconds
    bool sequential;
    std::int64_t first;
    std::int64_t last;
    std::int64_t solo = 0;

    /// Frames of one repetition.
    std::int64_t cycle() const;

    /// The interleaved samples of `frames` frames from the first on.
    std::vector<float> samples(std::int64_t frames) const;
};

}
