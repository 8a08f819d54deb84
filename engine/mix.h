#pragma once

#include <cstdint>
#include <cstring>
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

/// Real-time: writes `frames` frames of `channels` interleaved channels to `out`, of which only
/// channel `speaker` speaks: `line` from its sample `offset` on, times `gain`.
void mixTurn(float* out, std::int64_t channels, std::int64_t frames, std::int64_t speaker,
             const Line& line, std::int64_t offset, float gain) noexcept;

/// Real-time: writes `count` samples of silence.
inline void mixSilence(float* out, std::int64_t count) noexcept {
    std::memset(out, 0, static_cast<std::size_t>(count) * sizeof(float));
}

}
