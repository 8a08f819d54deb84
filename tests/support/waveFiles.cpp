#include "tests/support/waveFiles.h"

#include <sndfile.h>

#include <cmath>
#include <fstream>
#include <stdexcept>

namespace tallyvox {
namespace {

int subtype(WaveForm form) {
    switch (form) {
    case WaveForm::pcm8:
        return SF_FORMAT_PCM_U8;
    case WaveForm::pcm16:
        return SF_FORMAT_PCM_16;
    case WaveForm::pcm24:
        return SF_FORMAT_PCM_24;
    case WaveForm::float32:
        return SF_FORMAT_FLOAT;
    }
    return 0;
}

}

void writeWave(const std::filesystem::path& path, std::span<const float> interleaved, int rate,
               int channels, WaveForm form) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | subtype(form);
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error(sf_strerror(nullptr));
    const auto count = static_cast<sf_count_t>(interleaved.size());
    const bool complete = sf_write_float(file, interleaved.data(), count) == count;
    if (sf_close(file) != 0 || !complete)
        throw std::runtime_error("short write of " + path.string());
}

Wave readWave(const std::filesystem::path& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr)
        throw std::runtime_error(path.string() + ": " + sf_strerror(nullptr));
    Wave wave{info.channels, info.samplerate, {}};
    wave.interleaved.resize(static_cast<std::size_t>(info.frames * info.channels));
    const sf_count_t frames = sf_readf_float(file, wave.interleaved.data(), info.frames);
    sf_close(file);
    if (frames != info.frames)
        throw std::runtime_error("short read of " + path.string());
    return wave;
}

void writeBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    if (!file.flush())
        throw std::runtime_error("short write of " + path.string());
}

std::vector<float> sine(std::int64_t frames, float peak) {
    std::vector<float> samples;
    for (std::int64_t i = 0; i < frames; ++i)
        samples.push_back(peak * static_cast<float>(std::sin(static_cast<double>(i % 40) *
                                                             3.14159265358979323846 / 20)));
    return samples;
}

}
