#pragma once

#include "engine/AudioBufferList.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tallyvox {

/// The renderer's rules as they are told, one sample after the other and with nothing kept between
/// samples: what the product's renderer must equal bit for bit, and is measured against.
class LiteralRenderer {
public:
    LiteralRenderer(std::vector<std::vector<float>> voices, std::vector<bool> enabled, float gain,
                    std::int64_t gapFrames, bool sequential);

    void render(AudioBufferList* list) noexcept;

    std::int64_t cycle() const noexcept { return cycle_; }
    std::int64_t position() const noexcept { return position_; }
    void setPosition(std::int64_t position) noexcept { position_ = position; }

private:
    float sample(std::int64_t channel, std::int64_t offset, std::int64_t slot,
                 std::int64_t& ordinal) const noexcept;

    std::vector<std::vector<float>> voices_;
    std::vector<bool> enabled_;
    float gain_;
    std::int64_t cycle_ = 1;
    bool sequential_;
    std::int64_t position_ = 0;
};

/// `makeVoice` as its steps are told, appending one sample at a time.
std::vector<float> literalVoice(std::span<const float> samples, double fileRate, double rate);

}
