#include "tests/support/literal.h"

#include "base/checked.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallyvox {
namespace {

std::int64_t trueAmong(const std::vector<bool>& flags, std::int64_t count) {
    std::int64_t found = 0;
    for (std::int64_t i = 0; i < count; ++i)
        found += flags[static_cast<std::size_t>(i)] ? 1 : 0;
    return found;
}

std::int64_t sizeOf(const auto& array) { return static_cast<std::int64_t>(array.size()); }

}

LiteralRenderer::LiteralRenderer(std::vector<std::vector<float>> voices, std::vector<bool> enabled,
                                 float gain, std::int64_t gapFrames, bool sequential)
    : voices_(std::move(voices)),
      enabled_(std::move(enabled)),
      gain_(gain),
      sequential_(sequential) {
    std::int64_t longest = 0;
    for (const auto& voice : voices_)
        longest = std::max(longest, sizeOf(voice));
    cycle_ = std::max(checkedAdd(longest, gapFrames), std::int64_t{1});
}

float LiteralRenderer::sample(std::int64_t channel, std::int64_t offset, std::int64_t slot,
                              std::int64_t& ordinal) const noexcept {
    if (channel >= sizeOf(voices_))
        return 0.0F;
    require(channel < sizeOf(enabled_));
    if (!enabled_[static_cast<std::size_t>(channel)])
        return 0.0F;
    const std::int64_t own = ordinal++;
    if (sequential_ && own != slot)
        return 0.0F;
    const auto& voice = voices_[static_cast<std::size_t>(channel)];
    if (offset >= sizeOf(voice))
        return 0.0F;
    require(offset >= 0);
    return voice[static_cast<std::size_t>(offset)] * gain_;
}

void LiteralRenderer::render(AudioBufferList* list) noexcept {
    const std::int64_t turns = std::max(trueAmong(enabled_, sizeOf(enabled_)), std::int64_t{1});
    const std::int64_t start = position_;
    std::int64_t first = 0;
    std::int64_t longest = 0;
    for (const AudioBuffer& buffer : buffers(*list)) {
        const std::int64_t channels = buffer.mNumberChannels;
        if (channels == 0)
            continue;
        const std::int64_t frames = buffer.mDataByteSize / (4 * channels);
        longest = std::max(longest, frames);
        auto* const data = static_cast<float*>(buffer.mData);
        if (data != nullptr) {
            for (std::int64_t f = 0; f < frames; ++f) {
                const std::int64_t time = checkedAdd(start, f);
                const std::int64_t offset = time % cycle_;
                const std::int64_t slot = time / cycle_ % turns;
                std::int64_t ordinal = trueAmong(enabled_, std::min(sizeOf(enabled_), first));
                for (std::int64_t k = 0; k < channels; ++k)
                    data[f * channels + k] = sample(first + k, offset, slot, ordinal);
            }
        }
        first += channels;
    }
    const std::int64_t period = checkedMultiply(cycle_, sequential_ ? turns : 1);
    position_ = checkedAdd(start, longest) % period;
}

std::vector<float> literalVoice(std::span<const float> samples, double fileRate, double rate) {
    const auto n = static_cast<std::int64_t>(samples.size());
    float peak = 0.0F;
    for (std::int64_t i = 0; i < n; ++i) {
        const float magnitude = std::abs(samples[static_cast<std::size_t>(i)]);
        if (i == 0 || magnitude > peak)
            peak = magnitude;
    }
    const float divisor = peak > 0.001F ? peak : 0.001F;
    const std::int64_t outCount = checkedTruncate(rate * static_cast<double>(n) / fileRate);
    require(outCount >= 0);
    std::vector<float> voice;
    for (std::int64_t i = 0; i < outCount; ++i) {
        const double pos = fileRate * static_cast<double>(i) / rate;
        const std::int64_t i0 = std::min(n - 1, checkedTruncate(pos));
        const std::int64_t i1 = std::min(n - 1, i0 + 1);
        const auto frac = static_cast<float>(pos - static_cast<double>(i0));
        const float before = samples[static_cast<std::size_t>(i0)];
        const float after = samples[static_cast<std::size_t>(i1)];
        voice.push_back(((1 - frac) * before + after * frac) / divisor);
    }
    return voice;
}

}
