// The conversion of a recording into a voice, to the bit what sample after sample would give, but a
// block at a time, so that divisions and arithmetic become loops over vectors; only the look-up of
// the recording's samples stays one by one.
//
// Positions come in periods: 147 samples at 44.1 kHz cover 160 at 48 kHz. So a block is a number of
// whole periods, and the positions of the next one are the same plus a whole number: to the bit,
// as long as no binary exponent changes, because then all of them lie on one grid of doubles, and
// so does the whole number. What has been found out about a block is good for most that follow.

#include "engine/convert.h"

#include "base/checked.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>

namespace tallyvox {
namespace {

/// The largest magnitude. What is no number counts only in the first place.
float peakOf(std::span<const float> samples) {
    constexpr std::size_t lanes = 16;
    std::array<float, lanes> peaks{};
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
    const float peak = peakOf(samples);
    return peak > floor ? peak : floor;
}

/// What every sample of a voice is made from.
struct Source {
    std::span<const float> samples;
    double fileRate;
    double rate;
    float divisor;

    std::int64_t last() const { return static_cast<std::int64_t>(samples.size()) - 1; }
    double positionOf(std::size_t i) const { return fileRate * static_cast<double>(i) / rate; }
};

/// One sample, by the rule itself.
float convertOne(const Source& source, std::size_t i) {
    const double position = source.positionOf(i);
    const std::int64_t i0 = std::min(source.last(), checkedTruncate(position));
    const std::int64_t i1 = std::min(source.last(), i0 + 1);
    const auto frac = static_cast<float>(position - static_cast<double>(i0));
    return ((1 - frac) * source.samples[static_cast<std::size_t>(i0)] +
            source.samples[static_cast<std::size_t>(i1)] * frac) /
           source.divisor;
}

/// Enough samples to make the loops worth while, and the most that a block may have for a period's
/// sake.
constexpr std::size_t enough = 128;
constexpr std::size_t capacity = 640;

/// Where the samples of a block come from.
struct Block {
    std::array<double, capacity> positions;
    std::array<std::int32_t, capacity> indices;
    std::array<float, capacity> fractions;
};

/// The samples of the source on either side of one of a block, which one access fetches.
struct Neighbours {
    float before;
    float after;
};

/// How far it is from block to block.
struct Stride {
    std::size_t out;
    std::ptrdiff_t in; ///< 0 where the positions do not repeat
};

/// Whether the products and sums of positions are exact: whole rates, and not too long.
bool hasExactPositions(const Source& source, std::size_t count) {
    const auto whole = [](double rate) { return rate >= 1 && std::trunc(rate) == rate; };
    const double longest = std::max(source.fileRate, source.rate) * static_cast<double>(count);
    return whole(source.fileRate) && whole(source.rate) && longest < 0x1p52;
}

Stride strideOf(const Source& source, std::size_t count) {
    if (!hasExactPositions(source, count))
        return {capacity, 0};
    const auto from = static_cast<std::size_t>(source.fileRate);
    const auto to = static_cast<std::size_t>(source.rate);
    const std::size_t period = to / std::gcd(from, to);
    const std::size_t out = (enough + period - 1) / period * period;
    if (out > capacity)
        return {capacity, 0};
    return {out, static_cast<std::ptrdiff_t>(out * from / to)};
}

/// The block of `count` samples from number `i` on, none of which reaches the source's last sample.
void locate(const Source& source, std::size_t i, std::size_t count, Block& block) {
    auto& positions = block.positions;
    const auto start = static_cast<double>(i);
    for (std::size_t j = 0; j < count; ++j) {
        positions[j] = source.fileRate * (start + static_cast<std::int32_t>(j)) / source.rate;
        block.indices[j] = static_cast<std::int32_t>(positions[j]);
    }
    for (std::size_t j = 0; j < count; ++j)
        block.fractions[j] = static_cast<float>(positions[j] - block.indices[j]);
}

/// `samples` is where the block's index 0 lies.
void convertBlock(const Block& block, const float* samples, float divisor, std::span<float> out) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): written before it is read
    std::array<Neighbours, capacity> found;
    for (std::size_t j = 0; j < out.size(); ++j)
        std::memcpy(&found[j], samples + block.indices[j], sizeof(Neighbours));
    for (std::size_t j = 0; j < out.size(); ++j) {
        const float frac = block.fractions[j];
        out[j] = ((1 - frac) * found[j].before + found[j].after * frac) / divisor;
    }
}

/// The first samples of a voice, none of which reaches the source's last sample.
void convertBlocks(const Source& source, std::span<float> out) {
    const Stride stride = strideOf(source, out.size());
    const auto exponentOf = [&source](std::size_t i) { return std::ilogb(source.positionOf(i)); };
    Block block{};
    int exponent = 0; // of all positions of `block`, where that `repeats`
    bool repeats = false;
    std::ptrdiff_t shift = 0;
    for (std::size_t i = 0; i < out.size(); i += stride.out) {
        const std::size_t count = std::min(stride.out, out.size() - i);
        const int last = exponentOf(i + count - 1);
        if (repeats && last == exponent) {
            shift += stride.in;
        } else {
            locate(source, i, count, block);
            exponent = last;
            repeats = exponentOf(i) == last && stride.in != 0;
            shift = 0;
        }
        convertBlock(block, source.samples.data() + shift, source.divisor, out.subspan(i, count));
    }
}

/// At the file's own rate: positions are numbers.
void convertInPlace(const Source& source, std::span<float> out) {
    const float* const samples = source.samples.data();
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = (1.0F * samples[i] + samples[i + 1] * 0.0F) / source.divisor;
}

/// How many samples at the start of a voice of `count` come from before the source's last sample,
/// at positions that 32 bits can count.
std::size_t countInside(const Source& source, std::size_t count) {
    if (source.last() > std::numeric_limits<std::int32_t>::max())
        return 0;
    const auto last = static_cast<double>(source.last());
    while (count > 0 && !(source.positionOf(count - 1) < last))
        --count;
    return count;
}

}

std::int64_t convertedLength(std::size_t count, double fileRate, double rate) {
    const std::int64_t length = checkedTruncate(rate * static_cast<double>(count) / fileRate);
    require(length >= 0);
    return length;
}

void convert(std::span<const float> samples, double fileRate, double rate, std::span<float> out) {
    if (out.empty())
        return;
    const Source source{samples, fileRate, rate, divisorOf(samples)};
    const std::size_t inside = countInside(source, out.size());
    if (fileRate == rate && hasExactPositions(source, out.size()))
        convertInPlace(source, out.first(inside));
    else
        convertBlocks(source, out.first(inside));
    for (std::size_t i = inside; i < out.size(); ++i)
        out[i] = convertOne(source, i);
}

}
