#pragma once

namespace tallyvox {

/// Stops the process at once by SIGABRT, in silence: for impossible inputs and broken internal
/// rules. Real-time: safe.
[[noreturn]] void fatal() noexcept;

/// Stops the process unless `holds`. Real-time: safe.
inline void require(bool holds) noexcept {
    if (!holds) [[unlikely]]
        fatal();
}

}
