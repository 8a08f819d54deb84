#pragma once

#include <spa/utils/dict.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace tallyvox {

/// The value of `key`, empty where there is none.
std::string_view text(const spa_dict& properties, const char* key);

/// `text` as a whole number, or nothing where it is none.
std::optional<std::int64_t> parseNumber(std::string_view text);

/// The value of `key` as a whole number, or nothing.
std::optional<std::int64_t> number(const spa_dict& properties, const char* key);

}
