#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace tallyvox {

/// How a written sample is stored. The integer forms are rounded to nearest and saturate.
enum class SampleFormat { float32, pcm24, pcm16 };

/// A new WAVE file that grows from front to back: WAVE_FORMAT_EXTENSIBLE without speaker positions,
/// RF64 when it outgrows 4 GiB. Implemented by the linked platform. One thread at a time.
class WaveWriter {
public:
    /// Creates or empties `path` for 1 to 16383 channels at `rate` Hz, rounded to whole Hz in the
    /// file. What is written goes through the file cache at once, or, with a `block` of a multiple
    /// of 4096 bytes, past it in such blocks where the file system can do that; the last one comes
    /// with the close. Throws an `Error` of domain "POSIX" that names the file and the reason.
    WaveWriter(const std::filesystem::path& path, std::int64_t channels, double rate,
               SampleFormat format = SampleFormat::float32, std::size_t block = 0);
    WaveWriter(const WaveWriter&) = delete;
    WaveWriter& operator=(const WaveWriter&) = delete;
    /// Closes the file if that has not been done, and keeps silent about a failure.
    ~WaveWriter();

    /// Appends whole interleaved frames. Throws as the constructor does, for instance when the disk
    /// is full; what was written before stays readable once the file is closed.
    void write(std::span<const float> samples);

    /// Writes the final lengths and closes the file; further calls do nothing. Throws as the
    /// constructor does. Only a file that was closed without an error is complete.
    void close();

private:
    struct State;
    std::unique_ptr<State> state_;
};

}
