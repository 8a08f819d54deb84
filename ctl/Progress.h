#pragma once

#include "ctl/console.h"

#include <chrono>
#include <cstdint>

namespace tallyvox {

/// A bar that shows how much of a job is done, where somebody watches.
class Progress {
public:
    /// A job of `total` steps, none of them done.
    explicit Progress(std::int64_t total) : total_(total) {}

    /// `done` steps are done; redraws at most ten times a second.
    void reached(std::int64_t done);

private:
    std::int64_t total_;
    std::chrono::steady_clock::time_point next_{};
    LiveLine line_;
};

}
