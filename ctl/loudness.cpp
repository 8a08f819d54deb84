#include "ctl/loudness.h"

#include <cmath>
#include <cstdio>

namespace tallyvox {
namespace {

std::string level(double db) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f dBFS", db);
    return text;
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
