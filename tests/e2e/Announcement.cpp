#include "tests/e2e/Announcement.h"

#include "tests/support/literal.h"
#include "tests/support/waveFiles.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <fstream>

namespace tallyvox {

Announcement::Announcement(const Choice& choice)
    : choice_(choice), gain_(static_cast<float>(std::pow(10.0, choice.db / 20))) {
    for (std::int64_t number = 1; number <= std::min<std::int64_t>(choice.channels, 128);
         ++number) {
        const Wave wave = readWave(std::filesystem::path(TALLYVOX_RECORDINGS) /
                                   (std::to_string(number) + ".wav"));
        voices_.push_back(
            literalVoice(wave.interleaved, static_cast<double>(wave.rate), choice.rate));
        cycle_ = std::max(cycle_, std::ssize(voices_.back()));
    }
    cycle_ += static_cast<std::int64_t>(choice.rate * choice.gap);
}

float Announcement::sample(std::int64_t channel, std::int64_t frame) const noexcept {
    if (channel < choice_.first || channel > std::min<std::int64_t>(choice_.last, 128))
        return 0.0F;
    const std::int64_t turns = choice_.last - choice_.first + 1;
    if (choice_.sequential && channel != choice_.first + frame / cycle_ % turns)
        return 0.0F;
    const auto& voice = voices_[static_cast<std::size_t>(channel - 1)];
    const auto offset = static_cast<std::size_t>(frame % cycle_);
    return offset < voice.size() ? voice[offset] * gain_ : 0.0F;
}

std::int64_t Announcement::firstSound() const noexcept {
    for (std::int64_t frame = 0; frame < cycle_; ++frame)
        for (std::int64_t channel = choice_.first; channel <= choice_.last; ++channel)
            if (sample(channel, frame) != 0.0F)
                return frame;
    return cycle_;
}

Capture::Capture(const std::filesystem::path& file, std::int64_t channels)
    : channels_(channels), samples_(std::filesystem::file_size(file) / sizeof(float)) {
    std::ifstream(file, std::ios::binary)
        .read(reinterpret_cast<char*>(samples_.data()),
              static_cast<std::streamsize>(samples_.size() * sizeof(float)));
}

std::int64_t Capture::frames() const noexcept { return std::ssize(samples_) / channels_; }

std::vector<float> Capture::channel(std::int64_t channel, std::int64_t frames) const {
    std::vector<float> result;
    for (std::int64_t frame = 0; frame < std::min(frames, this->frames()); ++frame)
        result.push_back(samples_[static_cast<std::size_t>(frame * channels_ + channel - 1)]);
    return result;
}

std::string Capture::deviation(const Announcement& expected) const {
    const std::int64_t begin = expected.firstSound();
    auto got = samples_.begin();
    for (std::int64_t frame = 0; frame < frames(); ++frame)
        for (std::int64_t channel = 1; channel <= channels_; ++channel, ++got) {
            const float wanted = expected.sample(channel, begin + frame);
            if (std::bit_cast<std::uint32_t>(*got) != std::bit_cast<std::uint32_t>(wanted))
                return "channel " + std::to_string(channel) + ", frame " + std::to_string(frame) +
                       ": " + std::to_string(*got) + " instead of " + std::to_string(wanted);
        }
    return {};
}

}
