#include "platform/linux/pipewire/IoCycle.h"

#include "base/checked.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace tallyvox {

namespace {

/// Real-time: the frame at which the graph's cycle begins; the server writes it for each one,
/// whether this process is done with the last one or not.
std::uint64_t beginning(const spa_io_clock& clock) noexcept {
    return static_cast<const volatile std::uint64_t&>(clock.position);
}

/// Real-time: memory for the next `bytes` of a port's samples; null where nothing is connected to
/// it, or where the graph asks for more than its buffer holds.
void* takeBuffer(void* port, std::uint32_t bytes) noexcept {
    pw_buffer* const taken = pw_filter_dequeue_buffer(port);
    if (taken == nullptr)
        return nullptr;
    const spa_data& data = taken->buffer->datas[0];
    const bool fits = bytes <= data.maxsize;
    *data.chunk = {.offset = 0, .size = fits ? bytes : 0, .stride = sizeof(float), .flags = 0};
    pw_filter_queue_buffer(port, taken);
    return fits ? data.data : nullptr;
}

}

IoCycle::IoCycle(std::int64_t channels, double rate, Hardware::IOCallback callback)
    : expectedRate_(checkedCast<std::uint32_t>(checkedTruncate(std::round(rate)))),
      callback_(std::move(callback)),
      list_(std::vector<std::uint32_t>(static_cast<std::size_t>(channels), 1)),
      ports_(static_cast<std::size_t>(channels), nullptr) {}

void IoCycle::run(const spa_io_position& position) noexcept {
    const bool armed = armed_.load(std::memory_order_acquire);
    const std::uint64_t begin = beginning(position.clock);
    const std::uint64_t frames = position.clock.duration;
    const std::uint32_t rate = position.clock.rate.denom;
    rate_->store(rate, std::memory_order_relaxed);
    // A cycle that does not begin where the last one ended has lost what lies between.
    if (position.clock.id == clock_ && begin != next_)
        xruns_.fetch_add(1, std::memory_order_relaxed);
    clock_ = position.clock.id;
    next_ = begin + frames;
    const bool connected = takeBuffers(frames);
    const bool exact = rate == expectedRate_ && position.clock.rate.num == 1;
    if (armed && exact) {
        callback_(list_.get());
    } else {
        for (const AudioBuffer& buffer : list_.buffers())
            if (buffer.mData != nullptr)
                std::memset(buffer.mData, 0, buffer.mDataByteSize);
        const std::int64_t before = steady_.load(std::memory_order_relaxed);
        steady_.store(connected && exact ? before + 1 : 0, std::memory_order_release);
    }
    // The graph did not wait: others may have read what was not yet written.
    if (beginning(position.clock) != begin)
        xruns_.fetch_add(1, std::memory_order_relaxed);
    cycles_.fetch_add(1, std::memory_order_release);
}

void IoCycle::reset() noexcept {
    cycles_.load(std::memory_order_acquire);
    armed_.store(false, std::memory_order_relaxed);
    steady_.store(0, std::memory_order_relaxed);
    rate_->store(0, std::memory_order_relaxed);
    clock_ = SPA_ID_INVALID;
}

/// Real-time: answers whether every port has a buffer. A length that 32 bits cannot tell is more
/// than any buffer holds.
bool IoCycle::takeBuffers(std::uint64_t frames) noexcept {
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max() / sizeof(float);
    const auto bytes = static_cast<std::uint32_t>(std::min(frames, most) * sizeof(float));
    const auto buffers = list_.buffers();
    bool all = true;
    for (std::size_t channel = 0; channel < ports_.size(); ++channel) {
        buffers[channel].mData = takeBuffer(ports_[channel], bytes);
        buffers[channel].mDataByteSize = bytes;
        all = all && buffers[channel].mData != nullptr;
    }
    return all;
}

}
