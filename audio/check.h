#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tallyvox {

/// The readable line of a failed hardware call: what was done, the status in decimal, a hint.
std::string failureMessage(std::int32_t status, std::string_view what);

/// Throws an `Error` of domain "Audio" with the status as its code unless `status` is 0.
void check(std::int32_t status, std::string_view what);

}
