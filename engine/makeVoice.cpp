#include "base/checked.h"
#include "engine/voices.h"

#include <algorithm>
#include <cmath>

namespace tallyvox {
namespace {

float divisorOf(std::span<const float> samples) {
    if (samples.empty())
        return 0.001F;
    float peak = std::abs(samples[0]);
    for (const float sample : samples)
        peak = peak < std::abs(sample) ? std::abs(sample) : peak;
    return peak > 0.001F ? peak : 0.001F;
}

}

std::vector<float> makeVoice(std::span<const float> samples, double fileRate, double rate) {
    const auto count = static_cast<std::int64_t>(samples.size());
    const std::int64_t outCount = checkedTruncate(rate * static_cast<double>(count) / fileRate);
    require(outCount >= 0);
    const float divisor = divisorOf(samples);
    std::vector<float> voice;
    voice.reserve(static_cast<std::size_t>(outCount));
    for (std::int64_t i = 0; i < outCount; ++i) {
        const double pos = fileRate * static_cast<double>(i) / rate;
        const std::int64_t i0 = std::min(count - 1, checkedTruncate(pos));
        const std::int64_t i1 = std::min(count - 1, i0 + 1);
        const auto frac = static_cast<float>(pos - static_cast<double>(i0));
        voice.push_back(((1 - frac) * samples[static_cast<std::size_t>(i0)] +
                         samples[static_cast<std::size_t>(i1)] * frac) /
                        divisor);
    }
    return voice;
}

}
