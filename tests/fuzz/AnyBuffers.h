#pragma once

#include "engine/AudioBufferList.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <span>
#include <vector>

namespace tallyvox {

/// A buffer list of any shape, with exactly the memory that it states and stale samples in it.
class AnyBuffers {
public:
    struct Buffer {
        std::uint32_t channels;
        std::uint32_t bytes;
        bool null; ///< no memory, however many bytes are stated
    };

    /// Up to five buffers as `data` says.
    struct Shape : std::vector<Buffer> {
        explicit Shape(FuzzedDataProvider& data);
    };

    explicit AnyBuffers(const Shape& shape);

    AudioBufferList* list() noexcept { return list_.get(); }

    /// The samples of each buffer, a last part of one included.
    const std::vector<std::vector<float>>& memory() const noexcept { return memory_; }

private:
    OwnedBufferList list_;
    std::vector<std::vector<float>> memory_;
};

}
