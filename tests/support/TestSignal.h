#pragma once

#include "engine/AudioBufferList.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tallyvox {

/// The value of a signal that differs in every channel and frame within 4096, is exact in 32-bit
/// floats, is never silent, and is not its own scaled or shifted copy.
float testSample(std::int64_t channel, std::int64_t frame) noexcept;

/// Plays the signal from its first frame on, into one buffer a channel.
class TestSignal {
public:
    /// A callback that shares this signal's counts and position.
    std::function<void(AudioBufferList*)> callback() const;

    std::int64_t calls() const noexcept { return state_->calls.load(); }
    std::int64_t frames() const noexcept { return state_->frames.load(); }

private:
    struct State {
        std::atomic<std::int64_t> calls = 0;
        std::atomic<std::int64_t> frames = 0;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// What is wrong with a capture of `channels` interleaved 32-bit floats that should be the signal
/// from its first frame on: the first deviation, or nothing.
std::string deviation(const std::filesystem::path& capture, std::int64_t channels,
                      std::int64_t frames);

/// The first frame from `frame` on that is not silent on all channels, or nothing.
std::optional<std::int64_t> soundAfter(const std::filesystem::path& capture, std::int64_t channels,
                                       std::int64_t frame);

}
