#pragma once

#include <atomic>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace tallyvox {

/// Frames of one I/O cycle of either server, at most.
constexpr std::int64_t kLongestCycle = 8192;

/// Compares what a device gets, sample by sample, with one round of an announcement that comes
/// again and again.
class Ear {
public:
    /// `round` holds its frames one after the other, `channels` samples each, the first not silent.
    Ear(std::vector<float> round, std::int64_t channels)
        : round_(std::move(round)), channels_(channels), length_(std::ssize(round_) / channels) {}

    /// Real-time: the next `frames` frames, of which some must sound, an array for each of at most
    /// 256 channels; null is silence. What comes before the first sound is not counted.
    void hear(const float* const* inputs, std::int64_t frames) noexcept;

    /// Real-time: the listener was not there for the next `frames` frames of the server's clock,
    /// whatever was sent.
    void miss(std::int64_t frames) noexcept;

    /// Frames that are those of the round; any thread, like all that follow.
    std::int64_t right() const noexcept { return right_; }
    /// Frames of blocks that are no part of the round.
    std::int64_t wrong() const noexcept { return wrong_; }
    /// Frames of silent blocks, after which the announcement goes on where it was.
    std::int64_t late() const noexcept { return late_; }
    /// Blocks that are right, but from another frame of the round than the one due.
    std::int64_t jumps() const noexcept { return jumps_; }
    /// Frames that the listener missed.
    std::int64_t missed() const noexcept { return missed_; }

private:
    /// Whether the frames are those of the round from its frame `start` on.
    bool fits(const float* const* inputs, std::int64_t frames, std::int64_t start) const noexcept;
    bool isSilent(const float* const* inputs, std::int64_t from, std::int64_t to) const noexcept;

    std::vector<float> round_;
    std::int64_t channels_;
    std::int64_t length_; ///< of the round, in frames
    bool started_ = false;
    std::int64_t next_ = 0;
    std::atomic<std::int64_t> right_ = 0;
    std::atomic<std::int64_t> wrong_ = 0;
    std::atomic<std::int64_t> late_ = 0;
    std::atomic<std::int64_t> jumps_ = 0;
    std::atomic<std::int64_t> missed_ = 0;
};

/// A device of one server, in this process but a client of its own, that hears what it is sent.
class Listener {
public:
    virtual ~Listener() = default;
};

/// The device "Soak" of as many channels as `ear` has, on the server that this process uses.
/// Throws `std::runtime_error` where it cannot be.
std::unique_ptr<Listener> listenOnJack(Ear& ear, int channels);
std::unique_ptr<Listener> listenOnPipewire(Ear& ear, int channels, int rate);

}
