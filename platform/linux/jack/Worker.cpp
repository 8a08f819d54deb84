#include "platform/linux/jack/Worker.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace tallyvox {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPatienceAtTheEnd{500};

/// Where the job that runs on this thread leaves its latest sign of life.
thread_local std::atomic<Clock::rep>* signOfLife = nullptr;

}

struct Worker::State {
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> jobs;
    std::uint64_t queued = 0;
    std::uint64_t done = 0;
    std::atomic<Clock::rep> sign = 0; ///< the time of the latest sign of life
    bool ending = false;
    bool ended = false;

    Clock::time_point lastSign() const { return Clock::time_point{Clock::duration{sign.load()}}; }

    /// Time since the latest sign of life, 0 where no job is in hand. Under the mutex.
    Clock::duration silence() const {
        return done == queued ? Clock::duration{0} : Clock::now() - lastSign();
    }

    /// Under the mutex; the number of the job, from 1.
    std::uint64_t queue(std::function<void()> job) {
        if (done == queued)
            sign = Clock::now().time_since_epoch().count();
        jobs.push_back(std::move(job));
        changed.notify_all();
        return ++queued;
    }

    void work() {
        // The program's signals are for its own threads, and a write to a server that has just
        // died must not end it.
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, nullptr);

        signOfLife = &sign;
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return ending || !jobs.empty(); });
            if (jobs.empty())
                break;
            auto job = std::move(jobs.front());
            jobs.pop_front();
            lock.unlock();
            proceeding();
            job();
            job = nullptr;
            lock.lock();
            ++done;
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

bool Worker::run(std::function<void()> job, std::chrono::milliseconds patience,
                 std::chrono::milliseconds limit) {
    const auto begin = Clock::now();
    std::unique_lock lock(state_->mutex);
    if (state_->silence() >= patience)
        return false;
    const auto number = state_->queue(std::move(job));
    while (state_->done < number) {
        const auto giveUp = std::min(state_->lastSign() + patience, begin + limit);
        if (Clock::now() >= giveUp)
            return false;
        state_->changed.wait_until(lock, giveUp);
    }
    return true;
}

void Worker::post(std::function<void()> job) {
    const std::lock_guard lock(state_->mutex);
    state_->queue(std::move(job));
}

void Worker::proceeding() noexcept { signOfLife->store(Clock::now().time_since_epoch().count()); }

std::chrono::milliseconds Worker::silence() const {
    const std::lock_guard lock(state_->mutex);
    return std::chrono::duration_cast<std::chrono::milliseconds>(state_->silence());
}

}
