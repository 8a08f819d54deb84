#include "tests/soak/Ear.h"

namespace tallyvox {

void Ear::hear(const float* const* inputs, std::int64_t frames) noexcept {
    const std::int64_t length = static_cast<std::int64_t>(round_.size()) / channels_;
    std::int64_t right = 0;
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const float* const expected = &round_[static_cast<std::size_t>(next_ * channels_)];
        bool same = true;
        bool silent = true;
        for (std::int64_t channel = 0; channel < channels_; ++channel) {
            const float sample = inputs[channel] != nullptr ? inputs[channel][frame] : 0.0F;
            same = same && sample == expected[channel];
            silent = silent && sample == 0.0F;
        }
        if (!same && silent) {
            if (right_ + right > 0)
                ++late_;
            continue;
        }
        if (same)
            ++right;
        else
            ++wrong_;
        next_ = (next_ + 1) % length;
    }
    right_ += right;
}

}
