#include "platform/linux/jack/Worker.h"

#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace tallyvox {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPatienceAtTheEnd{500};

}

struct Worker::State {
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> jobs;
    std::uint64_t queued = 0;
    std::uint64_t done = 0;
    std::optional<Clock::time_point> lateSince; ///< a caller gave up on a job; until all are done
    bool ending = false;
    bool ended = false;

    void work() {
        // The program's signals are for its own threads, and a write to a server that has just
        // died must not end it.
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);

        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return ending || !jobs.empty(); });
            if (jobs.empty())
                break;
            auto job = std::move(jobs.front());
            jobs.pop_front();
            lock.unlock();
            job();
            job = nullptr;
            lock.lock();
            if (++done == queued)
                lateSince.reset();
            changed.notify_all();
        }
        ended = true;
        changed.notify_all();
    }
};

Worker::Worker()
    : state_(std::make_shared<State>()), thread_([state = state_] { state->work(); }) {}

Worker::~Worker() {
    std::unique_lock lock(state_->mutex);
    state_->ending = true;
    state_->changed.notify_all();
    const bool ended = state_->changed.wait_until(lock, Clock::now() + kPatienceAtTheEnd,
                                                  [this] { return state_->ended; });
    lock.unlock();
    if (ended)
        thread_.join();
    else
        thread_.detach();
}

bool Worker::run(std::function<void()> job, std::chrono::milliseconds patience) {
    const auto begin = Clock::now();
    std::unique_lock lock(state_->mutex);
    if (state_->lateSince)
        return false;
    state_->jobs.push_back(std::move(job));
    const auto number = ++state_->queued;
    state_->changed.notify_all();
    if (state_->changed.wait_until(lock, begin + patience, [&] { return state_->done >= number; }))
        return true;
    state_->lateSince = begin;
    return false;
}

void Worker::post(std::function<void()> job) {
    const std::lock_guard lock(state_->mutex);
    state_->jobs.push_back(std::move(job));
    ++state_->queued;
    state_->changed.notify_all();
}

std::chrono::milliseconds Worker::late() const {
    const std::lock_guard lock(state_->mutex);
    if (!state_->lateSince)
        return std::chrono::milliseconds{0};
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - *state_->lateSince);
}

}
