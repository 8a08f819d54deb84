#include "ctl/Between.h"

#include <array>
#include <charconv>
#include <optional>
#include <string>

namespace tallyvox {
namespace {

std::optional<double> numberOf(const std::string& text) {
    double number = 0.0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc{} && result.ptr == end ? std::optional(number) : std::nullopt;
}

std::string plain(double number) {
    std::array<char, 400> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                      std::chars_format::fixed);
    return {digits.data(), result.ptr};
}

std::string complaint(std::string& text, double least, double most) {
    const auto number = numberOf(text);
    if (!number)
        return '"' + text + "\" is no number";
    // A NaN lies between nothing.
    if (!(*number >= least && *number <= most))
        return text + " does not lie between " + plain(least) + " and " + plain(most);
    text = plain(*number);
    return {};
}

}

Between::Between(double least, double most)
    : Validator([least, most](std::string& text) { return complaint(text, least, most); }, "") {}

}
