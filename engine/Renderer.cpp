#include "engine/Renderer.h"

#include "base/checked.h"

#include <algorithm>
#include <utility>

namespace tallyvox {
namespace {

std::int64_t cycleOf(const std::vector<std::vector<float>>& voices, std::int64_t gapFrames) {
    std::size_t longest = 0;
    for (const auto& voice : voices)
        longest = std::max(longest, voice.size());
    return std::max(checkedAdd(checkedCast<std::int64_t>(longest), gapFrames), std::int64_t{1});
}

std::int64_t countTrue(const std::vector<bool>& flags, std::int64_t upTo) {
    const auto end = std::min(static_cast<std::int64_t>(flags.size()), upTo);
    return std::count(flags.begin(), flags.begin() + end, true);
}

}

Renderer::Renderer(std::vector<std::vector<float>> voices, std::vector<bool> enabled, float gain,
                   std::int64_t gapFrames, bool sequential)
    : voices_(std::move(voices)),
      enabled_(std::move(enabled)),
      gain_(gain),
      cycle_(cycleOf(voices_, gapFrames)),
      sequential_(sequential) {}

void Renderer::render(AudioBufferList* list) noexcept {
    const auto voiced = static_cast<std::int64_t>(voices_.size());
    const auto flagged = static_cast<std::int64_t>(enabled_.size());
    const std::int64_t turns = std::max(countTrue(enabled_, flagged), std::int64_t{1});
    const std::int64_t start = position_;
    std::int64_t first = 0;
    std::int64_t longest = 0;
    for (const AudioBuffer& buffer : buffers(*list)) {
        const std::int64_t channels = buffer.mNumberChannels;
        if (channels == 0)
            continue;
        const std::int64_t frames = buffer.mDataByteSize / (4 * channels);
        longest = std::max(longest, frames);
        auto* sample = static_cast<float*>(buffer.mData);
        for (std::int64_t f = 0; sample != nullptr && f < frames; ++f) {
            const std::int64_t time = checkedAdd(start, f);
            const std::int64_t offset = time % cycle_;
            const std::int64_t slot = time / cycle_ % turns;
            std::int64_t ordinal = countTrue(enabled_, first);
            for (std::int64_t g = first; g < first + channels; ++g) {
                float value = 0.0F;
                if (g < voiced) {
                    require(g < flagged);
                    const auto index = static_cast<std::size_t>(g);
                    if (enabled_[index]) {
                        const auto& voice = voices_[index];
                        if ((!sequential_ || ordinal == slot) &&
                            offset < static_cast<std::int64_t>(voice.size())) {
                            require(offset >= 0);
                            value = voice[static_cast<std::size_t>(offset)] * gain_;
                        }
                        ++ordinal;
                    }
                }
                *sample++ = value;
            }
        }
        first = checkedAdd(first, channels);
    }
    const std::int64_t period = checkedMultiply(cycle_, sequential_ ? turns : 1);
    position_ = checkedAdd(start, longest) % period;
}

}
