#pragma once

#include "platform/linux/alsa/sampleFormat.h"

#include <alsa/asoundlib.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// What a playback device offers.
struct AlsaShape {
    unsigned channels = 0;
    unsigned rate = 0; ///< in Hz

    bool operator==(const AlsaShape&) const = default;
};

/// One opened playback device of ALSA; it waits for the hardware only in `wait`. Statuses are
/// ALSA's own, negative error numbers.
class AlsaPcm {
public:
    /// Most channels that hardware is believed to have; plugins claim a thousand million.
    static constexpr unsigned kMostChannels = 1024;
    /// Most frames of a period that are believed.
    static constexpr std::size_t kMostFrames = 1U << 16U;

    /// Opens `name` and writes it to `pcm`, or answers why not: -EBUSY where another program has
    /// it.
    static std::int32_t open(const std::string& name, std::unique_ptr<AlsaPcm>& pcm);

    AlsaPcm(const AlsaPcm&) = delete;
    AlsaPcm& operator=(const AlsaPcm&) = delete;
    ~AlsaPcm();

    /// The usual rate that the hardware runs at and the most channels that it has then, or nothing
    /// where it takes no format that this program has.
    std::optional<AlsaShape> shape() const;

    /// Sets the hardware up for exactly `shape`, without any conversion by ALSA.
    std::int32_t configure(AlsaShape shape);

    /// After `configure`: the frames of an I/O cycle, how a sample is taken, and whether the
    /// channels share one buffer.
    std::size_t period() const noexcept { return period_; }
    SampleFormat format() const noexcept { return format_; }
    bool interleaved() const noexcept { return interleaved_; }

    /// Hands over up to `frames` frames, interleaved from the one address or one address a channel;
    /// answers how many were taken, or why none was: -EAGAIN where there is no room now, -EPIPE
    /// after an xrun, -ESTRPIPE in a suspended system.
    std::int64_t write(std::vector<void*>& buffers, std::size_t frames);

    /// Waits until there is room, 100 ms at most; negative on a failure.
    std::int32_t wait();

    /// Makes it ready to play from an empty buffer.
    std::int32_t prepare();

    /// Wakes it after a suspension: -EAGAIN while that goes on, -ENOSYS where it needs `prepare`.
    std::int32_t resume();

    /// Throws away what was not played.
    void drop();

private:
    explicit AlsaPcm(snd_pcm_t* pcm) : pcm_(pcm) {}

    snd_pcm_t* const pcm_;
    std::size_t period_ = 0;
    SampleFormat format_ = SampleFormat::float32;
    bool interleaved_ = true;
};

}
