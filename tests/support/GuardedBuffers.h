#pragma once

#include "engine/AudioBufferList.h"

#include <cstdint>
#include <vector>

namespace tallyvox {

/// A buffer list with memory of its own, stale samples in it, and guard words around every buffer.
class GuardedBuffers {
public:
    struct Shape {
        std::uint32_t channels = 0;
        std::uint32_t frames = 0;
        std::uint32_t extraBytes = 0; ///< beyond the last whole frame
        bool null = false;            ///< no memory, though its size is told
    };
    /// What every sample holds until somebody writes it.
    static constexpr float stale = -77.25F;

    explicit GuardedBuffers(std::vector<Shape> shapes);

    AudioBufferList* list() noexcept { return list_.get(); }

    /// Writes the stale value over everything.
    void soil();

    /// The samples of one channel, numbered from 0 over all buffers; empty where it has no memory.
    std::vector<float> channel(std::int64_t number) const;

    /// All words of one buffer, the bytes beyond the last whole frame included.
    std::vector<float> buffer(std::size_t number) const;

    /// Whether nothing was written outside the buffers and beyond their last whole frames.
    bool intact() const;

private:
    std::vector<Shape> shapes_;
    std::vector<std::vector<float>> memory_;
    OwnedBufferList list_;
};

}
