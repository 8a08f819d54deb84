#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace tallyvox {

/// Compares what a device gets, sample by sample, with one round of an announcement that comes
/// again and again.
class Ear {
public:
    /// `round` holds its frames one after the other, `channels` samples each; in the first no
    /// channel that speaks is silent.
    Ear(std::vector<float> round, std::int64_t channels)
        : round_(std::move(round)), channels_(channels) {}

    /// Real-time: the next `frames` frames, an array a channel; null is silence. Frames before the
    /// first sound are not counted.
    void hear(const float* const* inputs, std::int64_t frames) noexcept;

    /// Frames heard that are those of the round; any thread, like all that follow.
    std::int64_t right() const noexcept { return right_; }
    /// Frames with any other sample in them.
    std::int64_t wrong() const noexcept { return wrong_; }
    /// Frames of silence where sound was due, after which the announcement went on where it was.
    std::int64_t late() const noexcept { return late_; }

private:
    std::vector<float> round_;
    std::int64_t channels_;
    std::int64_t next_ = 0;
    std::atomic<std::int64_t> right_ = 0;
    std::atomic<std::int64_t> wrong_ = 0;
    std::atomic<std::int64_t> late_ = 0;
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
