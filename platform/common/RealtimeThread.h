#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace tallyvox {

/// Gives the calling thread a real-time priority where the system allows it; where not, the thread
/// runs on as it is.
void requestRealtimePriority() noexcept;

/// The thread of a device that no server calls. Its owner starts and stops it from one thread.
class RealtimeThread {
public:
    RealtimeThread() = default;
    RealtimeThread(const RealtimeThread&) = delete;
    RealtimeThread& operator=(const RealtimeThread&) = delete;
    ~RealtimeThread() { stop(); }

    /// Ends what runs, and runs `work`, with a real-time priority where the system allows it. The
    /// work may return at any time and must soon after `stopping` holds.
    void start(std::function<void()> work);

    /// Lets `stopping` hold and waits for the end of the work; answers whether any was started
    /// since the last stop.
    bool stop();

    /// Whether the work has to return; any thread.
    bool stopping() const noexcept { return stopping_.load(); }

private:
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

}
