#pragma once

#include <cstdint>
#include <span>

namespace tallyvox {

/// How many samples at `rate` Hz stand for `count` samples at `fileRate` Hz. A number that is
/// negative or no 64-bit number is fatal.
std::int64_t convertedLength(std::size_t count, double fileRate, double rate);

/// Fills `out`, as long as `convertedLength` says, with `samples` at `fileRate` Hz as a voice at
/// `rate` Hz: linear interpolation in double-precision positions, each sample divided by the peak,
/// or by 0.001 where the peak is no greater.
void convert(std::span<const float> samples, double fileRate, double rate, std::span<float> out);

}
