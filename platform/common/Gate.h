#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace tallyvox {

/// Stands between an I/O thread and the callback it may call. Starts shut.
class Gate {
public:
    /// Real-time: whether the callback may be called until `leave`, which must follow in any case.
    bool enter() noexcept {
        inside_.store(true);
        return open_.load();
    }

    /// Real-time: ends what `enter` began.
    void leave() noexcept { inside_.store(false); }

    /// Lets the next `enter` through.
    void open() noexcept { open_.store(true); }

    /// Shuts it and waits until the I/O thread is out: afterwards no call is under way and, until
    /// it is opened again, none will come.
    void shut() noexcept {
        open_.store(false);
        while (inside_.load())
            std::this_thread::sleep_for(std::chrono::microseconds(50));
    }

private:
    std::atomic<bool> open_ = false;
    std::atomic<bool> inside_ = false;
};

}
