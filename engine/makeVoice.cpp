// The conversion of a recording into a voice, to the bit what sample after sample would give:
// position, index and fraction of a whole block of samples first, so that the divisions and the
// arithmetic each become loops over vectors; only the look-up of the samples stays one by one.

#include "base/checked.h"
#include "engine/voices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tallyvox {
namespace {

constexpr std::size_t block = 256;

/// The largest magnitude. What is no number counts only in the first place.
float peakOf(std::span<const float> samples) {
    constexpr std::size_t lanes = 16;
    std::array<float, lanes> peaks;
    peaks.fill(std::abs(samples[0]));
    const auto raise = [&peaks](std::size_t lane, float sample) {
        const float magnitude = std::abs(sample);
        peaks[lane] = peaks[lane] < magnitude ? magnitude : peaks[lane];
    };
    std::size_t i = 0;
    for (; i + lanes <= samples.size(); i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane)
            raise(lane, samples[i + lane]);
    for (; i < samples.size(); ++i)
        raise(0, samples[i]);
    float peak = peaks[0];
    for (const float other : peaks)
        peak = peak < other ? other : peak;
    return peak;
}

float divisorOf(std::span<const float> samples) {
    constexpr float floor = 0.001F;
    const float peak = samples.empty() ? floor : peakOf(samples);
    return peak > floor ? peak : floor;
}

/// What every sample of a voice is made from.
struct Source {
    std::span<const float> samples;
    double fileRate;
    double rate;
    float divisor;

    std::int64_t last() const { return static_cast<std::int64_t>(samples.size()) - 1; }
    double positionOf(std::int64_t i) const { return fileRate * static_cast<double>(i) / rate; }
};

/// One sample, by the rule itself.
float convertOne(const Source& source, std::int64_t i) {
    const double position = source.positionOf(i);
    const std::int64_t i0 = std::min(source.last(), checkedTruncate(position));
    const std::int64_t i1 = std::min(source.last(), i0 + 1);
    const auto frac = static_cast<float>(position - static_cast<double>(i0));
    return ((1 - frac) * source.samples[static_cast<std::size_t>(i0)] +
            source.samples[static_cast<std::size_t>(i1)] * frac) /
           source.divisor;
}

/// A block of samples from number `i` on, none of which reaches the last sample of the source.
void convertBlock(const Source& source, std::int64_t i, float* out) {
    std::array<double, block> positions;
    std::array<std::int32_t, block> indices;
    std::array<float, block> before;
    std::array<float, block> after;
    const auto start = static_cast<double>(i);
    for (std::size_t j = 0; j < block; ++j) {
        positions[j] = source.fileRate * (start + static_cast<std::int32_t>(j)) / source.rate;
        indices[j] = static_cast<std::int32_t>(positions[j]);
    }
    const float* const samples = source.samples.data();
    for (std::size_t j = 0; j < block; ++j) {
        before[j] = samples[indices[j]];
        after[j] = samples[indices[j] + 1];
    }
    for (std::size_t j = 0; j < block; ++j) {
        const auto frac = static_cast<float>(positions[j] - indices[j]);
        out[j] = ((1 - frac) * before[j] + after[j] * frac) / source.divisor;
    }
}

/// `count` samples at the file's own rate: their positions are their numbers.
void convertInPlace(const Source& source, std::size_t count, float* out) {
    const float* const samples = source.samples.data();
    for (std::size_t i = 0; i < count; ++i)
        out[i] = (1.0F * samples[i] + samples[i + 1] * 0.0F) / source.divisor;
}

/// Whether rate times number divided by rate is that number again, for all of `count` numbers.
bool dividesExactly(const Source& source, std::size_t count) {
    return source.fileRate == source.rate && std::trunc(source.rate) == source.rate &&
           std::abs(source.rate) * static_cast<double>(count) < 0x1p53;
}

}

std::vector<float> makeVoice(std::span<const float> samples, double fileRate, double rate) {
    const std::int64_t outCount =
        checkedTruncate(rate * static_cast<double>(samples.size()) / fileRate);
    require(outCount >= 0);
    std::vector<float> voice(static_cast<std::size_t>(outCount));
    if (voice.empty())
        return voice;
    const Source source{samples, fileRate, rate, divisorOf(samples)};

    std::size_t done = 0;
    if (dividesExactly(source, voice.size())) {
        done = samples.size() - 1;
        convertInPlace(source, done, voice.data());
    } else if (source.last() <= std::numeric_limits<std::int32_t>::max()) {
        const auto inside = [&source](std::size_t i) {
            return source.positionOf(static_cast<std::int64_t>(i)) <
                   static_cast<double>(source.last());
        };
        for (; done + block <= voice.size() && inside(done + block - 1); done += block)
            convertBlock(source, static_cast<std::int64_t>(done), voice.data() + done);
    }
    for (; done < voice.size(); ++done)
        voice[done] = convertOne(source, static_cast<std::int64_t>(done));
    return voice;
}

}
