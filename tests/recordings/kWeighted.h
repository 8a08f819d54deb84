#pragma once

#include <span>

namespace tallyvox {

/// Loudness of all of `samples` at `rate` Hz in LUFS: K-weighted and ungated (ITU-R BS.1770), its
/// two filters designed for that rate from their analogue shapes.
double kWeightedLoudness(std::span<const float> samples, double rate);

}
