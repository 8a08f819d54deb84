#pragma once

#include "engine/Renderer.h"

#include <cstdint>
#include <vector>

namespace tallyvox {

/// How an announcement repeats: in a round every chosen channel speaks once, all in one cycle, or
/// in turn each in a cycle of its own.
class Rounds {
public:
    explicit Rounds(const Renderer& renderer);

    /// Frames of a round, at least 1.
    std::int64_t frames() const noexcept { return frames_; }

    /// The round that the absolute frame `frame` belongs to, counted from 1.
    std::int64_t roundAt(std::int64_t frame) const noexcept { return frame / frames_ + 1; }

    /// The number of the channel whose turn it is at `frame`, 0 where all speak together.
    std::int64_t channelAt(std::int64_t frame) const noexcept;

private:
    std::int64_t cycle_;
    std::vector<std::int64_t> turns_;
    std::int64_t frames_;
};

}
