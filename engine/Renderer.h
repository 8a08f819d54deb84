#pragma once

#include "engine/AudioBufferList.h"
#include "engine/VoiceStore.h"
#include "engine/mix.h"

#include <concepts>
#include <cstdint>
#include <span>
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
    /// The same with voices that already lie as it needs them. Braces mean arrays, never a store.
    Renderer(std::same_as<VoiceStore> auto voices, std::vector<bool> enabled, float gain,
             std::int64_t gapFrames, bool sequential);

    /// Real-time: overwrites every whole frame of every buffer that has memory, and advances the
    /// position by the longest buffer's frames. A channel with a voice but no flag, a negative
    /// position where a voice would be read, and an overflow of the frame arithmetic are fatal.
    void render(AudioBufferList* list) noexcept;

    /// The voices as they were given; they live as long as the renderer.
    const std::vector<Voice>& voices() const noexcept { return store_.voices(); }
    const std::vector<bool>& enabled() const noexcept { return enabled_; }
    float gain() const noexcept { return gain_; }
    /// Frames of one repetition, at least 1.
    std::int64_t cycle() const noexcept { return cycle_; }
    bool sequential() const noexcept { return sequential_; }
    /// The next frame to be produced; not synchronised with a running `render`.
    std::int64_t position() const noexcept { return position_; }
    void setPosition(std::int64_t position) noexcept { position_ = position; }
    /// The frames that the latest `render` advanced by, 0 before the first; not synchronised
    /// either.
    std::int64_t advance() const noexcept { return advance_; }

private:
    /// Where a frame lies in its cycle, who speaks then, and how many frames from there on are
    /// neighbours in the same cycle.
    struct Phase {
        std::int64_t offset;
        std::int64_t frames;
        std::int64_t speaker; ///< in sequential mode the channel whose turn it is, or -1
    };

    /// Channels of one buffer, and how many of them have a voice.
    struct Channels {
        std::int64_t first;
        std::int64_t count;
        std::int64_t voiced;
    };

    std::int64_t turns() const noexcept;
    Phase phaseAt(std::int64_t time) const noexcept;
    void fill(float* out, const Channels& channels, std::int64_t frames,
              const Phase& phase) const noexcept;
    void write(float* out, const Channels& channels, std::int64_t frames,
               const Phase& phase) const noexcept;
    void writeTogether(float* out, const Channels& channels, std::int64_t frames,
                       std::int64_t offset) const noexcept;
    void writeTurn(float* out, const Channels& channels, std::int64_t frames,
                   const Phase& phase) const noexcept;
    bool speaksAmong(const Channels& channels) const noexcept;

    VoiceStore store_;
    std::vector<bool> enabled_;
    float gain_;
    std::int64_t cycle_;
    bool sequential_;
    std::int64_t position_ = 0;
    std::int64_t advance_ = 0;

    std::vector<Line> lines_;            ///< a line a voice, empty where its channel is silent
    std::int64_t longestLine_ = 0;       ///< frames of the longest of them
    std::vector<std::int64_t> speakers_; ///< the enabled channels, ascending
};

}
