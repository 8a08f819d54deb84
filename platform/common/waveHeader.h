#pragma once

#include "engine/WaveWriter.h"

#include <cstdint>
#include <vector>

namespace tallyvox {

/// Bytes of one stored sample.
std::int64_t bytesPerSample(SampleFormat format) noexcept;

/// Everything of a WAVE file before its samples, of the same length whatever `frames` is: RIFF with
/// a reserved chunk, or RF64 with that chunk as `ds64` where 32 bits cannot hold the lengths.
std::vector<std::uint8_t> waveHeader(std::int64_t channels, double rate, SampleFormat format,
                                     std::int64_t frames);

}
