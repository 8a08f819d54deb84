#include "tests/ctl/Announced.h"

#include "tests/ctl/Companion.h"
#include "tests/support/literal.h"

#include <algorithm>
#include <cmath>

namespace tallyvox {
namespace {

std::vector<std::vector<float>> voicesOf(const Announced& announced) {
    std::vector<std::vector<float>> voices;
    for (std::int64_t number = 1; number <= std::min<std::int64_t>(announced.channels, 128);
         ++number)
        voices.push_back(literalVoice(Companion::recording(number), 22050, announced.rate));
    return voices;
}

std::int64_t cycleOf(const Announced& announced, const std::vector<std::vector<float>>& voices) {
    std::size_t longest = 0;
    for (const auto& voice : voices)
        longest = std::max(longest, voice.size());
    return static_cast<std::int64_t>(longest) +
           static_cast<std::int64_t>(announced.rate * announced.gap);
}

}

std::int64_t Announced::cycle() const { return cycleOf(*this, voicesOf(*this)); }

std::vector<float> Announced::samples(std::int64_t frames) const {
    const auto voices = voicesOf(*this);
    const std::int64_t length = cycleOf(*this, voices);
    const auto gain = static_cast<float>(std::pow(10.0, db / 20));
    std::vector<float> result;
    result.reserve(static_cast<std::size_t>(frames * channels));
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const std::int64_t turn = first + frame / length % (last - first + 1);
        const auto offset = static_cast<std::size_t>(frame % length);
        for (std::int64_t channel = 1; channel <= channels; ++channel) {
            const bool speaks = channel >= first && channel <= last && channel <= 128 &&
                                (solo == 0 || channel == solo) && (!sequential || channel == turn);
            const auto* voice = speaks ? &voices[static_cast<std::size_t>(channel - 1)] : nullptr;
            result.push_back(voice != nullptr && offset < voice->size() ? (*voice)[offset] * gain
                                                                        : 0.0F);
        }
    }
    return result;
}

}
