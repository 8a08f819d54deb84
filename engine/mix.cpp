// The inner loops of the renderer.
//
// A hundred voices are a hundred streams of memory, read side by side, a few cache lines of each in
// every call: more than the processor foresees by itself. So every loop here asks for the samples
// that it will need `ahead` samples later, be it in the same channel or in another one, and from
// the last channel on in the first one again, where the next call will go on.
//
// Interleaved channels are woven in tiles of four frames of four channels: four vectors along time
// are loaded, scaled, transposed and stored as four vectors across channels. Tiles form groups of
// channels, so that one group's frames fill whole lines of the output, and groups go through the
// frames block by block, so that what was asked for has not left the cache when it is needed.

#include "engine/mix.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace tallyvox {
namespace {

constexpr std::int64_t lineSamples = 16;
constexpr std::int64_t ahead = 2048;
constexpr std::int64_t groupChannels = 16;
constexpr std::int64_t blockFrames = 32;
constexpr std::int64_t turnSamples = 4096;

/// Four samples at any address.
using Four [[gnu::vector_size(16), gnu::aligned(4), gnu::may_alias]] = float;

/// What the channels of one group read in one run of frames.
using Sources = std::array<const float*, groupChannels>;

/// Read in place of the samples of a channel that is silent while its neighbours speak.
constexpr std::array<float, blockFrames> silence{};

std::size_t index(std::int64_t i) { return static_cast<std::size_t>(i); }

Four load(const float* from) { return *reinterpret_cast<const Four*>(from); }
void store(float* to, Four value) { *reinterpret_cast<Four*>(to) = value; }

void fetch(const float* samples) { __builtin_prefetch(samples); }

/// Walks through lines as the mixer does, a fixed number of steps ahead of it: from line to line,
/// and after the last one through the first one again, `frames` later.
class Lookahead {
public:
    Lookahead(std::span<const Line> lines, std::int64_t number, std::int64_t offset,
              std::int64_t frames) noexcept
        : lines_(lines), frames_(frames) {
        const auto count = static_cast<std::int64_t>(lines.size());
        const std::int64_t laps = number < count ? 0 : number < 2 * count ? 1 : number / count;
        next_ = index(number - laps * count);
        offset_ = offset + laps * frames;
    }

    const float* next() noexcept {
        const Line& line = lines_[next_];
        const float* const samples = line.samples + std::min(offset_, line.frames);
        if (++next_ == lines_.size()) {
            next_ = 0;
            offset_ += frames_;
        }
        return samples;
    }

private:
    std::span<const Line> lines_;
    std::int64_t frames_;
    std::size_t next_;
    std::int64_t offset_;
};

/// Four frames of four channels.
void weaveTile(float* out, std::int64_t stride, const float* const* from, std::int64_t f,
               float gain) {
    const Four a = load(from[0] + f) * gain;
    const Four b = load(from[1] + f) * gain;
    const Four c = load(from[2] + f) * gain;
    const Four d = load(from[3] + f) * gain;
    const Four ab01 = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Four ab23 = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Four cd01 = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Four cd23 = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    store(out, __builtin_shufflevector(ab01, cd01, 0, 1, 4, 5));
    store(out + stride, __builtin_shufflevector(ab01, cd01, 2, 3, 6, 7));
    store(out + 2 * stride, __builtin_shufflevector(ab23, cd23, 0, 1, 4, 5));
    store(out + 3 * stride, __builtin_shufflevector(ab23, cd23, 2, 3, 6, 7));
}

void weave(float* out, std::int64_t stride, const Sources& from, std::int64_t width,
           std::int64_t frames, float gain) {
    std::int64_t f = 0;
    for (; f + 4 <= frames; f += 4) {
        float* const row = out + f * stride;
        std::int64_t k = 0;
        for (; k + 4 <= width; k += 4)
            weaveTile(row + k, stride, &from[index(k)], f, gain);
        for (; k < width; ++k)
            for (std::int64_t i = 0; i < 4; ++i)
                row[i * stride + k] = from[index(k)][f + i] * gain;
    }
    for (; f < frames; ++f)
        for (std::int64_t k = 0; k < width; ++k)
            out[f * stride + k] = from[index(k)][f] * gain;
}

/// One channel's silence among others: zero times the gain is not always the zero that silence is.
void silenceColumn(float* out, std::int64_t stride, std::int64_t frames) {
    for (std::int64_t f = 0; f < frames; ++f)
        out[f * stride] = 0.0F;
}

/// A full group whose channels all speak to the end of the block, as most do; answers whether it is
/// one. With its width known the loops unroll, which saves a sixth of the time.
bool weaveFullGroup(float* out, std::int64_t stride, std::int64_t frames,
                    std::span<const Line> lines, std::int64_t offset, float gain) {
    if (lines.size() != groupChannels)
        return false;
    std::int64_t shortest = lines[0].frames;
    for (const Line& line : lines)
        shortest = std::min(shortest, line.frames);
    if (offset + frames > shortest)
        return false;
    Sources from;
    for (std::size_t k = 0; k < from.size(); ++k)
        from[k] = lines[k].samples + offset;
    weave(out, stride, from, groupChannels, frames, gain);
    return true;
}

/// At most a block of frames of at most a group of channels.
void mixGroup(float* out, std::int64_t stride, std::int64_t frames, std::span<const Line> lines,
              std::int64_t offset, float gain) {
    const auto width = static_cast<std::int64_t>(lines.size());
    const float zero = 0.0F * gain;
    const bool zeroIsSilence = zero == 0.0F && !std::signbit(zero);
    for (std::int64_t f = 0; f < frames;) {
        Sources from;
        std::int64_t run = frames - f;
        std::int64_t speaking = 0;
        for (std::int64_t k = 0; k < width; ++k) {
            const Line& line = lines[index(k)];
            const std::int64_t left = line.frames - (offset + f);
            from[index(k)] = left > 0 ? line.samples + (offset + f) : silence.data();
            run = left > 0 ? std::min(run, left) : run;
            speaking += left > 0 ? 1 : 0;
        }
        float* const row = out + f * stride;
        if (speaking > 0)
            weave(row, stride, from, width, run, gain);
        if (speaking < width && (speaking == 0 || !zeroIsSilence))
            for (std::int64_t k = 0; k < width; ++k)
                if (from[index(k)] == silence.data())
                    silenceColumn(row + k, stride, run);
        f += run;
    }
}

/// `lines` are those of the buffer's voiced channels.
void mixInterleaved(float* out, std::int64_t channels, std::int64_t frames,
                    std::span<const Line> lines, std::int64_t offset, float gain) {
    const auto voiced = static_cast<std::int64_t>(lines.size());
    for (std::int64_t f = 0; f < frames; f += blockFrames) {
        const std::int64_t block = std::min(blockFrames, frames - f);
        float* const row = out + f * channels;
        Lookahead later(lines, ahead / blockFrames, offset + f, block);
        for (std::int64_t k = 0; k < voiced; k += groupChannels) {
            const std::int64_t width = std::min(groupChannels, voiced - k);
            for (std::int64_t i = 0; i < width; ++i) {
                const float* const next = later.next();
                fetch(next);
                fetch(next + lineSamples);
                fetch(next + 2 * lineSamples - 1);
            }
            const auto group = lines.subspan(index(k), index(width));
            if (!weaveFullGroup(row + k, channels, block, group, offset + f, gain))
                mixGroup(row + k, channels, block, group, offset + f, gain);
        }
        for (std::int64_t i = 0; voiced < channels && i < block; ++i)
            mixSilence(row + i * channels + voiced, channels - voiced);
    }
}

void mixSplit(float* out, std::int64_t frames, std::span<const Line> lines, std::int64_t number,
              std::int64_t offset, float gain) {
    const Line& line = lines[index(number)];
    const std::int64_t spoken = std::clamp(line.frames - offset, std::int64_t{0}, frames);
    const float* const from = line.samples + offset;
    const std::int64_t linesAhead =
        std::max(ahead >> std::bit_width(index(frames - 1)), std::int64_t{1});
    const float* const next = Lookahead(lines, number + linesAhead, offset, frames).next();
    std::int64_t f = 0;
    for (; f + lineSamples <= spoken; f += lineSamples) {
        fetch(next + f);
        for (std::int64_t i = f; i < f + lineSamples; ++i)
            out[i] = from[i] * gain;
    }
    fetch(next + frames - 1);
    for (; f < spoken; ++f)
        out[f] = from[f] * gain;
    mixSilence(out + spoken, frames - spoken);
}

}

void mix(float* out, std::int64_t channels, std::int64_t frames, std::span<const Line> lines,
         std::int64_t first, std::int64_t offset, float gain) noexcept {
    const std::int64_t voiced = std::min(static_cast<std::int64_t>(lines.size()) - first, channels);
    if (voiced <= 0)
        mixSilence(out, channels * frames);
    else if (channels == 1)
        mixSplit(out, frames, lines, first, offset, gain);
    else
        mixInterleaved(out, channels, frames, lines.subspan(index(first), index(voiced)), offset,
                       gain);
}

// Silence first, then the speaker's samples, while the silence is still in the nearest cache.
void mixTurn(float* out, std::int64_t channels, std::int64_t frames, std::int64_t speaker,
             const Line& line, std::int64_t offset, float gain) noexcept {
    const std::int64_t block = std::max(turnSamples / channels, std::int64_t{1});
    for (std::int64_t f = 0; f < frames; f += block) {
        const std::int64_t end = std::min(f + block, frames);
        mixSilence(out + f * channels, (end - f) * channels);
        const std::int64_t spoken = std::min(end, line.frames - offset);
        for (std::int64_t i = f; i < spoken; ++i)
            out[i * channels + speaker] = line.samples[offset + i] * gain;
    }
}

}
