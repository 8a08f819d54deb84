#include "engine/Renderer.h"

#include "base/checked.h"

#include <algorithm>
#include <utility>

namespace tallyvox {
namespace {

std::int64_t sizeOf(const auto& array) { return static_cast<std::int64_t>(array.size()); }

std::int64_t cycleOf(const std::vector<std::span<const float>>& voices, std::int64_t gapFrames) {
    std::int64_t longest = 0;
    for (const auto& voice : voices)
        longest = std::max(longest, sizeOf(voice));
    return std::max(checkedAdd(longest, gapFrames), std::int64_t{1});
}

}

Renderer::Renderer(std::vector<std::vector<float>> voices, std::vector<bool> enabled, float gain,
                   std::int64_t gapFrames, bool sequential)
    : store_(std::move(voices)),
      enabled_(std::move(enabled)),
      gain_(gain),
      cycle_(cycleOf(store_.voices(), gapFrames)),
      sequential_(sequential) {
    for (std::size_t g = 0; g < store_.voices().size(); ++g) {
        const auto voice = store_.voices()[g];
        const bool speaks = g < enabled_.size() && enabled_[g];
        lines_.push_back({voice.data(), speaks ? sizeOf(voice) : 0});
        longestLine_ = std::max(longestLine_, lines_.back().frames);
    }
    for (std::int64_t g = 0; g < sizeOf(enabled_); ++g)
        if (enabled_[static_cast<std::size_t>(g)])
            speakers_.push_back(g);
}

// Before frame 0, cycles are counted toward zero: offsets run from a negative number up to 0, and
// the frame at 0 is alone, the last of its cycle.
Renderer::Phase Renderer::phaseAt(std::int64_t time) const noexcept {
    const std::int64_t offset = time % cycle_;
    const std::int64_t turns = std::max(sizeOf(speakers_), std::int64_t{1});
    const std::int64_t frames = time >= 0 ? cycle_ - offset : std::max(-offset, std::int64_t{1});
    return {offset, time / cycle_ % turns, frames};
}

void Renderer::render(AudioBufferList* list) noexcept {
    const std::int64_t start = position_;
    const Phase phase = phaseAt(start);
    std::int64_t first = 0;
    std::int64_t longest = 0;
    for (const AudioBuffer& buffer : buffers(*list)) {
        const std::int64_t channels = buffer.mNumberChannels;
        if (channels == 0)
            continue;
        const std::int64_t frames = buffer.mDataByteSize / (4 * channels);
        longest = std::max(longest, frames);
        if (buffer.mData != nullptr && frames > 0) {
            const std::int64_t voiced =
                std::clamp(sizeOf(lines_) - first, std::int64_t{0}, channels);
            require(voiced == 0 || first + voiced <= sizeOf(enabled_));
            checkedAdd(start, frames - 1);
            fill(static_cast<float*>(buffer.mData), {first, channels, voiced}, frames, phase);
        }
        first = checkedAdd(first, channels);
    }
    const std::int64_t turns = std::max(sizeOf(speakers_), std::int64_t{1});
    const std::int64_t period = checkedMultiply(cycle_, sequential_ ? turns : 1);
    position_ = checkedAdd(start, longest) % period;
}

void Renderer::fill(float* out, Channels channels, std::int64_t frames,
                    Phase phase) const noexcept {
    for (std::int64_t done = 0;;) {
        const std::int64_t run = std::min(phase.frames, frames - done);
        float* const row = out + done * channels.count;
        if (sequential_)
            writeTurn(row, channels, run, phase.offset, phase.slot);
        else
            writeTogether(row, channels, run, phase.offset);
        done += run;
        if (done == frames)
            return;
        phase = phaseAt(position_ + done);
    }
}

void Renderer::writeTogether(float* out, Channels channels, std::int64_t frames,
                             std::int64_t offset) const noexcept {
    if (offset >= 0 && offset < longestLine_) {
        mix(out, channels.count, frames, lines_, channels.first, offset, gain_);
        return;
    }
    const auto speaker = std::lower_bound(speakers_.begin(), speakers_.end(), channels.first);
    require(offset >= 0 || speaker == speakers_.end() ||
            *speaker >= channels.first + channels.voiced);
    mixSilence(out, frames * channels.count);
}

void Renderer::writeTurn(float* out, Channels channels, std::int64_t frames, std::int64_t offset,
                         std::int64_t slot) const noexcept {
    mixSilence(out, frames * channels.count);
    if (slot < 0 || slot >= sizeOf(speakers_))
        return;
    const std::int64_t k = speakers_[static_cast<std::size_t>(slot)] - channels.first;
    if (k < 0 || k >= channels.voiced)
        return;
    require(offset >= 0);
    mixOver(out + k, channels.count, frames, lines_[static_cast<std::size_t>(channels.first + k)],
            offset, gain_);
}

}
