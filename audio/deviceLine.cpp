#include "audio/deviceLine.h"

#include "base/fatal.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tallyvox {

std::string rateText(double rate) {
    // The longest double has 309 digits before the point, or 1074 places after it.
    std::array<char, 1100> digits{};
    // Without a format an exponent would shorten 100000.
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), rate, std::chars_format::fixed);
    require(result.ec == std::errc{});
    std::string text(digits.data(), result.ptr);
    if (std::isfinite(rate) && text.find('.') == std::string::npos)
        text += ".0";
    return text;
}

std::string deviceLine(const OutputDevice& device) {
    return std::to_string(device.id) + ": " + device.name + " | " +
           std::to_string(device.channels) + " outputs | " + rateText(device.rate) + " Hz";
}

}
