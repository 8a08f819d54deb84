#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace tallyvox {

/// Runs `trial` in a child of this process, which must have no other threads and no failed
/// expectation, and waits for its end, `patience` at most. Answers nothing where it ended by itself
/// and no expectation failed in it; otherwise how it ended.
std::string died(const std::function<void()>& trial,
                 std::chrono::seconds patience = std::chrono::seconds(60));

}
