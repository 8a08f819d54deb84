#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
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

    /// Reads from the start, at most `length()` frames; answers the frames actually read as one
    /// array a channel, or nothing where the format cannot be had as floats. Throws the system's
    /// own error, naming the file, when reading fails.
    std::optional<std::vector<std::vector<float>>> read();

private:
    struct Handle;
    Handle* handle_ = nullptr;
};

}
