#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tallyvox {

/// A sound file opened for reading, decoded to 32-bit floats. Implemented by the linked platform.
class AudioFile {
public:
    /// Opens `path`, or throws the system's own error as one line that names the file.
    explicit AudioFile(const std::filesystem::path& path);
    ~AudioFile();
    AudioFile(const AudioFile&) = delete;
    AudioFile& operator=(const AudioFile&) = delete;

    /// Nominal rate of the file in Hz.
    double rate() const noexcept;

    /// Length as the file states it, in frames.
    std::int64_t length() const noexcept;

    /// Reads from the start, at most `length()` frames: the frames actually read become one array a
    /// channel in `channels`, whose memory serves again. False where the format cannot be had as
    /// floats. Throws the system's own error, naming the file, when reading fails.
    bool read(std::vector<std::vector<float>>& channels);

private:
    struct Handle;
    Handle* handle_ = nullptr;
};

}
