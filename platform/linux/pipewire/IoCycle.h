#pragma once

#include "audio/Hardware.h"
#include "engine/AudioBufferList.h"

#include <pipewire/filter.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace tallyvox {

/// What the real-time thread does in one cycle of the graph, and all that it touches.
class IoCycle {
public:
    /// For `channels` ports in a graph of `rate` Hz.
    IoCycle(std::int64_t channels, double rate, Hardware::IOCallback callback);

    /// Before the first cycle: the data of the filter's port of `channel`, counted from 0.
    void setPort(std::int64_t channel, void* port) noexcept {
        ports_[static_cast<std::size_t>(channel)] = port;
    }

    /// From now on the callback fills the buffers; before, there is silence.
    void arm() noexcept { armed_.store(true, std::memory_order_release); }

    /// Real-time: fills the ports' buffers with the callback's samples, or with silence as long as
    /// the cycle is not armed or the graph runs at another rate.
    void run(const spa_io_position& position) noexcept;

    /// Silent cycles in a row, up to now, in which every port had a buffer and the graph ran at the
    /// stream's rate; any thread.
    std::int64_t steady() const noexcept { return steady_.load(std::memory_order_acquire); }

    /// After the last cycle, on the thread that saw to its being the last: silence again, and what
    /// the real-time thread wrote is visible.
    void reset() noexcept;

    /// How often the graph went on without a cycle since the construction, or before one was done;
    /// any thread.
    std::uint64_t xruns() const noexcept { return xruns_.load(std::memory_order_relaxed); }

    /// The graph's rate in Hz in the last cycle, 0 while there are none; any thread.
    std::shared_ptr<const std::atomic<std::uint32_t>> graphRate() const noexcept { return rate_; }

private:
    bool takeBuffers(std::uint64_t frames) noexcept;

    std::uint32_t expectedRate_;
    Hardware::IOCallback callback_;
    OwnedBufferList list_;
    std::vector<void*> ports_;
    std::atomic<bool> armed_ = false;
    std::atomic<std::int64_t> steady_ = 0;
    std::atomic<std::uint64_t> cycles_ = 0;
    std::atomic<std::uint64_t> xruns_ = 0;
    std::shared_ptr<std::atomic<std::uint32_t>> rate_ =
        std::make_shared<std::atomic<std::uint32_t>>(0U);
    std::uint32_t clock_ = SPA_ID_INVALID;
    std::uint64_t next_ = 0;
};

}
