#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace tallyvox {

/// One thread that runs jobs in turn for callers who can wait only so long: calls into a sound
/// server's library may hang for as long as the server does. A job that came too late still runs
/// to its end, so it must own, or share, all that it touches.
class Worker {
public:
    Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Waits half a second for the jobs in hand; a thread that hangs is left behind.
    ~Worker();

    /// Queues `job` and waits until it is done, `patience` at most; answers whether it is. While an
    /// earlier job is late it answers false at once and drops `job`.
    bool run(std::function<void()> job, std::chrono::milliseconds patience);

    /// Queues `job` without waiting.
    void post(std::function<void()> job);

    /// How long a caller has been waiting in vain for the server, 0 where none has.
    std::chrono::milliseconds late() const;

private:
    struct State;
    std::shared_ptr<State> state_;
    std::thread thread_;
};

}
