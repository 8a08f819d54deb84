#pragma once

#include "engine/AudioBufferList.h"
#include "engine/WaveWriter.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace tallyvox {

/// What all files of one export have in common.
struct WaveShape {
    std::int64_t channels;
    double rate; ///< Hz
    SampleFormat format;
};

/// Takes what a renderer writes, block by block, to one file or more.
class WaveSink {
public:
    WaveSink() = default;
    WaveSink(const WaveSink&) = delete;
    WaveSink& operator=(const WaveSink&) = delete;
    virtual ~WaveSink() = default;

    /// The most frames a block may have.
    virtual std::int64_t capacity() const = 0;

    /// The buffers for a block of `frames` frames, valid until the next call.
    virtual AudioBufferList* block(std::int64_t frames) = 0;

    /// Writes the block last asked for. Throws an `Error` of domain "File".
    virtual void write() = 0;

    /// Completes the files. Throws an `Error` of domain "File".
    virtual void close() = 0;
};

/// One file with all channels.
std::unique_ptr<WaveSink> wholeFile(const std::filesystem::path& file, const WaveShape& shape);

/// One mono file a channel in `folder`, named by the channel's number with leading zeros; all of
/// them are open until they are complete.
std::unique_ptr<WaveSink> splitFiles(const std::filesystem::path& folder, const WaveShape& shape);

}
