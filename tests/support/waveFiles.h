#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace tallyvox {

/// How a test's WAV file holds its samples.
enum class WaveForm { pcm8, pcm16, pcm24, float32 };

/// Writes `interleaved` samples as a WAV file of `channels` channels at `rate` Hz.
void writeWave(const std::filesystem::path& path, std::span<const float> interleaved, int rate,
               int channels = 1, WaveForm form = WaveForm::float32);

/// What a sound file holds.
struct Wave {
    std::int64_t channels;
    std::int64_t rate; ///< Hz
    std::vector<float> interleaved;
};

/// Reads a whole file. Throws where it is no sound file or shorter than it says.
Wave readWave(const std::filesystem::path& path);

/// Writes `bytes` and nothing else.
void writeBytes(const std::filesystem::path& path, std::string_view bytes);

/// `frames` samples of a sine of the given peak, which the first quarter of a period reaches.
std::vector<float> sine(std::int64_t frames, float peak);

}
