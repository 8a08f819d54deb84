#include "tests/soak/Ear.h"

#include <array>

namespace tallyvox {

bool Ear::fits(const float* const* inputs, std::int64_t frames, std::int64_t start) const noexcept {
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const std::int64_t at = (start + frame) % length_;
        const float* const expected = &round_[static_cast<std::size_t>(at * channels_)];
        for (std::int64_t channel = 0; channel < channels_; ++channel)
            if ((inputs[channel] != nullptr ? inputs[channel][frame] : 0.0F) != expected[channel])
                return false;
    }
    return true;
}

void Ear::hear(const float* const* inputs, std::int64_t frames) noexcept {
    std::int64_t from = 0;
    if (isSilent(inputs, 0, frames)) {
        late_ += started_ ? frames : 0;
        return;
    }
    while (!started_ && isSilent(inputs, from, from + 1))
        ++from;
    started_ = true;
    std::array<const float*, 256> rest{};
    for (std::int64_t channel = 0; channel < channels_; ++channel)
        rest[static_cast<std::size_t>(channel)] =
            inputs[channel] != nullptr ? inputs[channel] + from : nullptr;
    frames -= from;
    if (!fits(rest.data(), frames, next_)) {
        std::int64_t other = 0;
        while (other < length_ && !fits(rest.data(), frames, other))
            ++other;
        if (other == length_) {
            wrong_ += frames;
            next_ = (next_ + frames) % length_;
            return;
        }
        ++jumps_;
        next_ = other;
    }
    right_ += frames;
    next_ = (next_ + frames) % length_;
}

void Ear::miss(std::int64_t frames) noexcept {
    if (!started_)
        return;
    missed_ += frames;
    next_ = (next_ + frames) % length_;
}

bool Ear::isSilent(const float* const* inputs, std::int64_t from, std::int64_t to) const noexcept {
    for (std::int64_t channel = 0; channel < channels_; ++channel)
        for (std::int64_t frame = from; inputs[channel] != nullptr && frame < to; ++frame)
            if (inputs[channel][frame] != 0.0F)
                return false;
    return true;
}

}
