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

    /// Queues `job` and waits until it is done; answers whether it is. It gives up when the worker
    /// has shown no sign of life for `patience`, and after `limit` in any case; where there was no
    /// sign for so long from the beginning it answers at once and drops `job`.
    bool run(std::function<void()> job, std::chrono::milliseconds patience,
             std::chrono::milliseconds limit = std::chrono::minutes(1));

    /// Queues `job` without waiting.
    void post(std::function<void()> job);

    /// For jobs: a sign of life, as is their beginning.
    static void proceeding() noexcept;

    /// How long the job in hand has shown no sign of life, 0 where there is none.
    std::chrono::milliseconds silence() const;

private:
    struct State;
    std::shared_ptr<State> state_;
    std::thread thread_;
};

}
