#include "platform/linux/pipewire/properties.h"

#include <charconv>
#include <system_error>

namespace tallyvox {

std::string_view text(const spa_dict& properties, const char* key) {
    const char* const value = spa_dict_lookup(&properties, key);
    return value != nullptr ? value : "";
}

std::optional<std::int64_t> parseNumber(std::string_view text) {
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stopped == end && !text.empty() ? std::optional(number)
                                                                   : std::nullopt;
}

std::optional<std::int64_t> number(const spa_dict& properties, const char* key) {
    return parseNumber(text(properties, key));
}

}
