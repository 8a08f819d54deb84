#include "engine/Renderer.h"

#include "base/checked.h"

#include <algorithm>
#include <utility>

namespace tallyvox {
namespace {

std::int64_t sizeOf(const auto& array) { return static_cast<std::int64_t>(array.size()); }

std::int64_t cycleOf(const std::vector<Voice>& voices, std::int64_t gapFrames) {
    std::int64_t longest = 0;
    for (const auto& voice : voices)
        longest = std::max(longest, sizeOf(voice));
    return std::max(checkedAdd(longest, gapFrames), std::int64_t{1});
}

}

Renderer::Renderer(std::vector<std::vector<float>> voices, std::vector<bool> enabled, float gain,
                   std::int64_t gapFrames, bool sequential)
    : Renderer(VoiceStore::of(std::move(voices)), std::move(enabled), gain, gapFrames, sequential) {
}

Renderer::Renderer(std::same_as<VoiceStore> auto voices, std::vector<bool> enabled, float gain,
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

template Renderer::Renderer(VoiceStore, std::vector<bool>, float, std::int64_t, bool);

/// Turns of a sequential round.
std::int64_t Renderer::turns() const noexcept {
    return std::max(sizeOf(speakers_), std::int64_t{1});
}

// Before frame 0, cycles are counted toward zero: offsets run from a negative number up to 0, and
// the frame at 0 is alone, the last of its cycle. No channel's turn is before the first.
Renderer::Phase Renderer::phaseAt(std::int64_t time) const noexcept {
    const std::int64_t offset = time % cycle_;
    const std::int64_t frames = time >= 0 ? cycle_ - offset : std::max(-offset, std::int64_t{1});
    const std::int64_t slot = time / cycle_ % turns();
    const bool somebody = slot >= 0 && slot < sizeOf(speakers_);
    return {offset, frames, somebody ? speakers_[static_cast<std::size_t>(slot)] : -1};
}

// Flattened, because the silence of a short buffer takes no longer than the calls on the way to it.
[[gnu::flatten]] void Renderer::render(AudioBufferList* list) noexcept {
    const Phase phase = phaseAt(position_);
    std::int64_t first = 0;
    std::int64_t longest = 0;
    std::int64_t channels = 0;
    std::int64_t bytes = 0;
    std::int64_t frames = 0;
    for (const AudioBuffer& buffer : buffers(*list)) {
        if (buffer.mNumberChannels == 0)
            continue;
        // Buffers mostly are of one shape, and a division takes as long as their silence.
        if (buffer.mNumberChannels != channels || buffer.mDataByteSize != bytes) {
            channels = buffer.mNumberChannels;
            bytes = buffer.mDataByteSize;
            frames = bytes / (4 * channels);
            longest = std::max(longest, frames);
        }
        if (buffer.mData != nullptr && frames > 0) {
            const std::int64_t voiced =
                std::clamp(sizeOf(lines_) - first, std::int64_t{0}, channels);
            require(voiced == 0 || first + voiced <= sizeOf(enabled_));
            fill(static_cast<float*>(buffer.mData), {first, channels, voiced}, frames, phase);
        }
        first = checkedAdd(first, channels);
    }
    const std::int64_t period = checkedMultiply(cycle_, sequential_ ? turns() : 1);
    position_ = checkedAdd(position_, longest) % period;
    advance_ = longest;
}

void Renderer::fill(float* out, const Channels& channels, std::int64_t frames,
                    const Phase& phase) const noexcept {
    std::int64_t done = std::min(phase.frames, frames);
    write(out, channels, done, phase);
    while (done < frames) {
        const Phase next = phaseAt(checkedAdd(position_, done));
        const std::int64_t run = std::min(next.frames, frames - done);
        write(out + done * channels.count, channels, run, next);
        done += run;
    }
}

void Renderer::write(float* out, const Channels& channels, std::int64_t frames,
                     const Phase& phase) const noexcept {
    if (sequential_)
        writeTurn(out, channels, frames, phase);
    else
        writeTogether(out, channels, frames, phase.offset);
}

void Renderer::writeTogether(float* out, const Channels& channels, std::int64_t frames,
                             std::int64_t offset) const noexcept {
    if (offset >= 0 && offset < longestLine_) {
        mix(out, channels.count, frames, lines_, channels.first, offset, gain_);
    } else {
        require(offset >= 0 || !speaksAmong(channels));
        mixSilence(out, frames * channels.count);
    }
}

void Renderer::writeTurn(float* out, const Channels& channels, std::int64_t frames,
                         const Phase& phase) const noexcept {
    const std::int64_t k = phase.speaker - channels.first;
    if (k < 0 || k >= channels.voiced) {
        mixSilence(out, frames * channels.count);
        return;
    }
    require(phase.offset >= 0);
    mixTurn(out, channels.count, frames, k, lines_[static_cast<std::size_t>(phase.speaker)],
            phase.offset, gain_);
}

/// Whether any of `channels` has a voice and its flag.
bool Renderer::speaksAmong(const Channels& channels) const noexcept {
    const auto speaker = std::lower_bound(speakers_.begin(), speakers_.end(), channels.first);
    return speaker != speakers_.end() && *speaker < channels.first + channels.voiced;
}

}
