#pragma once

#include "engine/AudioBufferList.h"
#include "engine/Renderer.h"
#include "engine/VoiceStore.h"
#include "tests/support/literal.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tallyvox {

/// What is played while measuring: voices of nearly a second at 96 kHz, all of one length, so that
/// none falls silent before the others; 46 MB of them for 128 channels.
struct Scene {
    static constexpr std::int64_t voiceFrames = 90'001;
    static constexpr std::int64_t gapFrames = 72'000;

    static std::vector<std::vector<float>> voices(std::int64_t channels);
    /// One a number of channels and mode, shared by all that ask; whoever calls it sets its
    /// position.
    static std::shared_ptr<Renderer> renderer(std::int64_t channels, bool sequential);
    static std::shared_ptr<LiteralRenderer> literal(std::int64_t channels, bool sequential);

    /// All voices as one interleaved stream, in the same kind of memory.
    static std::shared_ptr<VoiceStore> interleaved(std::int64_t channels);
};

/// The buffers that are filled: one for all channels, or one a channel.
class SceneBuffers {
public:
    SceneBuffers(std::int64_t channels, bool split, std::int64_t frames);

    AudioBufferList* list() noexcept { return list_.get(); }
    float* samples(std::size_t buffer) noexcept { return memory_[buffer].data(); }

private:
    OwnedBufferList list_;
    std::vector<std::vector<float>> memory_;
};

}
