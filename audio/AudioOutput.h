#pragma once

#include "audio/Hardware.h"
#include "audio/devices.h"
#include "engine/Renderer.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tallyvox {

/// The stream to one output device: checks the device's format, loads the voices, and lets the
/// device's callback render. One announcement at a time. Main thread only.
class AudioOutput {
public:
    explicit AudioOutput(Hardware& hardware = tallyvox::hardware());
    AudioOutput(const AudioOutput&) = delete;
    AudioOutput& operator=(const AudioOutput&) = delete;
    ~AudioOutput();

    /// Stops what plays, then announces on `device`: `enabled` holds a flag a channel, `db` is the
    /// peak level in dBFS, `gap` the silence between repetitions in seconds. Throws the first
    /// failure as an `Error`; a device without channels and a gap that is no frame count are fatal.
    void start(const OutputDevice& device, std::vector<bool> enabled, double db, double gap,
               bool sequential);

    /// Stops and releases the callback, then the renderer. Harmless when nothing runs.
    void stop() noexcept;

    /// The registered callback, or none.
    std::optional<Hardware::IOProcId> proc() const noexcept { return proc_; }
    /// The device last prepared, 0 before the first.
    std::uint32_t device() const noexcept { return device_; }
    /// The renderer of the running announcement, or none.
    const std::shared_ptr<Renderer>& renderer() const noexcept { return renderer_; }
    /// The frames of the announcement last started that its device has used up: those that it was
    /// given before its latest call.
    std::int64_t played() const noexcept { return played_->load(std::memory_order_relaxed); }

private:
    using Frames = std::atomic<std::int64_t>;
    static_assert(Frames::is_always_lock_free);

    Hardware& hardware_;
    std::optional<Hardware::IOProcId> proc_;
    std::uint32_t device_ = 0;
    std::shared_ptr<Renderer> renderer_;
    std::shared_ptr<Frames> played_ = std::make_shared<Frames>(0);
};

}
