#pragma once

// The platform's own records where it has them; elsewhere the same names, field for field.
#if __has_include(<CoreAudio/CoreAudio.h>)
#include <CoreAudio/CoreAudio.h>
#else

#include <cstdint>

/// One buffer of a list: `mNumberChannels` interleaved channels of 32-bit floats in native order,
/// `mDataByteSize` bytes at `mData`, which may be null.
struct AudioBuffer {
    std::uint32_t mNumberChannels;
    std::uint32_t mDataByteSize;
    void* mData;
};

/// A count and that many buffers; the array really is as long as the count says.
struct AudioBufferList {
    std::uint32_t mNumberBuffers;
    AudioBuffer mBuffers[1];
};

static_assert(sizeof(AudioBuffer) == 16);
static_assert(sizeof(AudioBufferList) == 24);

#endif

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace tallyvox {

/// The buffers of `list`, all `mNumberBuffers` of them. Real-time: safe.
std::span<AudioBuffer> buffers(AudioBufferList& list) noexcept;
/// Real-time: safe.
std::span<const AudioBuffer> buffers(const AudioBufferList& list) noexcept;

/// Bytes of a list of `count` buffers, header included.
std::size_t audioBufferListSize(std::size_t count) noexcept;

/// Owns the memory of one list, but not that of the samples: every `mData` starts as null.
class OwnedBufferList {
public:
    /// One buffer per entry, as wide as the entry says, `mDataByteSize` 0.
    explicit OwnedBufferList(const std::vector<std::uint32_t>& channelsPerBuffer);

    AudioBufferList* get() noexcept;
    std::span<AudioBuffer> buffers() noexcept { return tallyvox::buffers(*get()); }

private:
    std::unique_ptr<std::byte[]> memory_;
};

}
