#pragma once

#include <cstddef>
#include <cstdint>

namespace tallyvox {

/// How hardware takes a sample, in native byte order unless it says otherwise.
enum class SampleFormat {
    float32,
    int32,
    int24,    ///< in the three low bytes of four
    packed24, ///< in three bytes, the lowest first
    int16,
};

/// Bytes of one sample.
std::size_t sampleSize(SampleFormat format) noexcept;

/// Real-time: writes `count` samples of full scale 1.0 to `target`, `stride` bytes apart. Integers
/// are rounded to the nearest, a tie to the even one, and saturate; what is not a number is 0.
void convertSamples(const float* source, std::size_t count, SampleFormat format, std::byte* target,
                    std::size_t stride) noexcept;

}
