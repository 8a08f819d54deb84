#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace tallyvox {

/// Polls `holds` until it is true; false after `patience`.
inline bool eventually(const std::function<bool()>& holds,
                       std::chrono::milliseconds patience = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

}
