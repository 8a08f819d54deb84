#pragma once

#include <cstdint>
#include <span>

namespace tallyvox {

/// One channel as the mixer reads it: `frames` samples and then silence.
struct Line {
    const float* samples;
    std::int64_t frames;
};

/// Real-time: writes `frames` frames of `channels` interleaved channels to `out`: channel k speaks
/// `lines[first + k]` from its sample `offset` on, times `gain`, and is silent after its end and
/// where there is no such line. Nothing but +0.0 is silence, whatever the gain.
void mix(float* out, std::int64_t channels, std::int64_t frames, std::span<const Line> lines,
         std::int64_t first, std::int64_t offset, float gain) noexcept;

/// Real-time: writes `line` from its sample `offset` on, times `gain`, to every `stride`th float of
/// `out`, `frames` times at most and no further than the line's end.
void mixOver(float* out, std::int64_t stride, std::int64_t frames, Line line, std::int64_t offset,
             float gain) noexcept;

/// Real-time: writes `count` samples of silence.
void mixSilence(float* out, std::int64_t count) noexcept;

}
