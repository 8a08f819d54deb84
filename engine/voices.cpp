#include "engine/voices.h"

#include "base/Error.h"
#include "base/checked.h"
#include "engine/AudioFile.h"
#include "engine/Environment.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

namespace tallyvox {
namespace {

float divisorOf(std::span<const float> samples) {
    if (samples.empty())
        return 0.001F;
    float peak = std::abs(samples[0]);
    for (const float sample : samples)
        peak = peak < std::abs(sample) ? std::abs(sample) : peak;
    return peak > 0.001F ? peak : 0.001F;
}

}

std::filesystem::path voiceRoot() {
    if (const auto resources = resourceFolder()) {
        std::error_code unreadable;
        if (std::filesystem::exists(*resources / "Voices" / "1.wav", unreadable))
            return *resources / "Voices";
    }
    const auto words = arguments();
    require(!words.empty());
    return std::filesystem::path(words.front()).parent_path() /
           "Tallyvox.app/Contents/Resources/Voices";
}

std::vector<float> loadVoice(std::int64_t number, double rate) {
    AudioFile file(voiceRoot() / (std::to_string(number) + ".wav"));
    require(file.length() >= 0 && file.length() <= std::numeric_limits<std::uint32_t>::max());
    try {
        const auto channels = file.read();
        if (!channels || channels->empty())
            throw Error("Voice", 2);
        return makeVoice(channels->front(), file.rate(), rate);
    } catch (const std::bad_alloc&) {
        throw Error("Voice", 1);
    } catch (const std::length_error&) {
        throw Error("Voice", 1);
    }
}

std::vector<float> makeVoice(std::span<const float> samples, double fileRate, double rate) {
    const auto count = static_cast<std::int64_t>(samples.size());
    const std::int64_t outCount = checkedTruncate(rate * static_cast<double>(count) / fileRate);
    require(outCount >= 0);
    const float divisor = divisorOf(samples);
    std::vector<float> voice;
    voice.reserve(static_cast<std::size_t>(outCount));
    for (std::int64_t i = 0; i < outCount; ++i) {
        const double pos = fileRate * static_cast<double>(i) / rate;
        const std::int64_t i0 = std::min(count - 1, checkedTruncate(pos));
        const std::int64_t i1 = std::min(count - 1, i0 + 1);
        const auto frac = static_cast<float>(pos - static_cast<double>(i0));
        voice.push_back(((1 - frac) * samples[static_cast<std::size_t>(i0)] +
                         samples[static_cast<std::size_t>(i1)] * frac) /
                        divisor);
    }
    return voice;
}

}
