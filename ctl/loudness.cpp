#include "ctl/loudness.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tallyvox {
namespace {

std::string level(double db) {
    std::array<char, 32> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), db, std::chars_format::fixed, 1)
            .ptr;
    return std::string(digits.data(), end) + " dBFS";
}

}

std::string loudness(std::int64_t channels, double db) {
    if (channels == 1)
        return "One channel at a time, peaks at " + level(db) + ".";
    const double count = static_cast<double>(channels);
    return std::to_string(channels) + " channels at once, each with peaks at " + level(db) +
           ": their sum stays below " + level(db + 20 * std::log10(count)) +
           " with all peaks aligned, about " + level(db + 10 * std::log10(count)) +
           " uncorrelated.";
}

}
