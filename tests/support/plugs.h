#pragma once

#include "tests/support/environmentNumber.h"

#include <chrono>

namespace tallyvox {

/// The longest that the window may stand still.
constexpr std::chrono::seconds kHang{2};

/// How long `action` takes.
template<class Action>
std::chrono::milliseconds duration(Action action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 begin);
}

/// For how long a test holds a server: TALLYVOX_STANDSTILL seconds, or `otherwise`, which must not
/// hold up the suite.
inline std::chrono::milliseconds standstill(std::chrono::milliseconds otherwise) {
    const int seconds = environmentNumber("TALLYVOX_STANDSTILL", 0);
    return seconds > 0 ? std::chrono::seconds(seconds) : otherwise;
}

}
