#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tallyvox {

/// What an announcement with the program's own recordings must sound like, computed from the
/// recordings and the absolute number of the frame, without anything of the program.
class Announcement {
public:
    struct Choice {
        std::int64_t channels; ///< of the output
        double rate;           ///< Hz
        double db;
        double gap; ///< seconds
        bool sequential;
        std::int64_t first;
        std::int64_t last;
    };

    explicit Announcement(const Choice& choice);

    /// Frames of one repetition.
    std::int64_t cycle() const noexcept { return cycle_; }

    /// The sample of `channel`, counted from 1, at an absolute frame.
    float sample(std::int64_t channel, std::int64_t frame) const noexcept;

    /// The first frame that is not silent on all channels.
    std::int64_t firstSound() const noexcept;

private:
    Choice choice_;
    float gain_;
    std::vector<std::vector<float>> voices_;
    std::int64_t cycle_ = 0;
};

/// A capture of interleaved 32-bit floats that begins with the first sound.
class Capture {
public:
    Capture(const std::filesystem::path& file, std::int64_t channels);

    std::int64_t frames() const noexcept;

    /// The samples of `channel`, counted from 1, of the first `frames` frames.
    std::vector<float> channel(std::int64_t channel, std::int64_t frames) const;

    /// Where it first differs from `expected` in a single bit, or nothing.
    std::string deviation(const Announcement& expected) const;

private:
    std::int64_t channels_;
    std::vector<float> samples_;
};

}
