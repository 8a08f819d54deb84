#pragma once

#include "engine/AudioBufferList.h"

#include <cstdint>
#include <vector>

namespace tallyvox {

/// The real-time mixer: writes into every channel of a buffer list that channel's own voice, or
/// silence. All channels repeat on one beat, the cycle; in sequential mode the enabled channels
/// take turns, one a cycle, in ascending order.
///
/// Channel g of a list (counted over its buffers) plays `voices[g]` where `enabled[g]` is true.
class Renderer {
public:
    /// `gain` is linear; `gapFrames` is the silence after the longest voice and may be negative.
    /// An overflow of the cycle's length is fatal.
    Renderer(std::vector<std::vector<float>> voices, std::vector<bool> enabled, float gain,
             std::int64_t gapFrames, bool sequential);

    /// Real-time: overwrites every whole frame of every buffer that has memory, and advances the
    /// position by the longest buffer's frames. A channel with a voice but no flag, a negative
    /// position where a voice would be read, and an overflow of the frame arithmetic are fatal.
    void render(AudioBufferList* list) noexcept;

    const std::vector<std::vector<float>>& voices() const noexcept { return voices_; }
    const std::vector<bool>& enabled() const noexcept { return enabled_; }
    float gain() const noexcept { return gain_; }
    /// Frames of one repetition, at least 1.
    std::int64_t cycle() const noexcept { return cycle_; }
    bool sequential() const noexcept { return sequential_; }
    /// The next frame to be produced; not synchronised with a running `render`.
    std::int64_t position() const noexcept { return position_; }
    void setPosition(std::int64_t position) noexcept { position_ = position; }

private:
    std::vector<std::vector<float>> voices_;
    std::vector<bool> enabled_;
    float gain_;
    std::int64_t cycle_;
    bool sequential_;
    std::int64_t position_ = 0;
};

}
