#include "engine/WaveWriter.h"

#include "base/Error.h"
#include "base/checked.h"
#include "platform/common/waveHeader.h"

#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <utility>
#include <vector>

namespace tallyvox {

namespace {

void store(std::uint8_t* to, std::uint32_t value, std::int64_t bytes) noexcept {
    for (std::int64_t index = 0; index < bytes; ++index)
        to[index] = static_cast<std::uint8_t>(value >> (8 * index));
}

/// `sample` as an integer of which 1.0 is one more than the largest; not a number is silence.
std::uint32_t quantised(float sample, double scale) noexcept {
    const double value = std::nearbyint(static_cast<double>(sample) * scale);
    if (std::isnan(value))
        return 0;
    return static_cast<std::uint32_t>(
        static_cast<std::int32_t>(std::fmin(std::fmax(value, -scale), scale - 1.0)));
}

std::uint32_t bits(float sample) noexcept {
    std::uint32_t pattern = 0;
    std::memcpy(&pattern, &sample, sizeof pattern);
    return pattern;
}

std::uint32_t encoded(float sample, SampleFormat format) noexcept {
    switch (format) {
    case SampleFormat::float32:
        return bits(sample);
    case SampleFormat::pcm24:
        return quantised(sample, 0x1p23);
    case SampleFormat::pcm16:
        return quantised(sample, 0x1p15);
    }
    fatal();
}

}

struct WaveWriter::State {
    std::filesystem::path path;
    std::int64_t channels;
    double rate;
    SampleFormat format;
    std::FILE* file = nullptr;
    std::int64_t frames = 0;
    std::vector<std::uint8_t> bytes;

    [[noreturn]] void fail(int reason) const {
        throw Error("POSIX", reason,
                    "Cannot write \"" + path.string() +
                        "\": " + std::generic_category().message(reason) + ".");
    }

    bool put(std::span<const std::uint8_t> data) const noexcept {
        return std::fwrite(data.data(), 1, data.size(), file) == data.size();
    }

    bool putFloats(std::span<const float> samples) const noexcept {
        return std::fwrite(samples.data(), sizeof(float), samples.size(), file) == samples.size();
    }

    bool putEncoded(std::span<const float> samples) {
        const std::int64_t width = bytesPerSample(format);
        bytes.resize(samples.size() * static_cast<std::size_t>(width));
        std::uint8_t* to = bytes.data();
        for (const float sample : samples) {
            store(to, encoded(sample, format), width);
            to += width;
        }
        return put(bytes);
    }

    /// Writes the header for `frames` and the byte that ends an odd number of them.
    bool finish() const noexcept {
        const std::int64_t dataBytes = frames * channels * bytesPerSample(format);
        const auto header = waveHeader(channels, rate, format, frames);
        if (dataBytes % 2 != 0 && (fseeko(file, std::ssize(header) + dataBytes, SEEK_SET) != 0 ||
                                   std::fputc(0, file) == EOF))
            return false;
        return fseeko(file, 0, SEEK_SET) == 0 && put(header);
    }
};

WaveWriter::WaveWriter(const std::filesystem::path& path, std::int64_t channels, double rate,
                       SampleFormat format)
    : state_(new State{path, channels, rate, format, nullptr, 0, {}}) {
    const auto header = waveHeader(channels, rate, format, 0);
    state_->file = std::fopen(path.c_str(), "wb");
    if (state_->file == nullptr)
        state_->fail(errno);
    // A full disk is noticed by the write that it stops, not by a later one.
    static_cast<void>(std::setvbuf(state_->file, nullptr, _IONBF, 0));
    if (!state_->put(header)) {
        const int reason = errno;
        static_cast<void>(std::fclose(state_->file));
        state_->fail(reason);
    }
}

WaveWriter::~WaveWriter() {
    try {
        close();
    } catch (const Error&) {
        // Only `close` reports; whoever needs the file complete calls it.
    }
}

void WaveWriter::write(std::span<const float> samples) {
    require(state_->file != nullptr && std::ssize(samples) % state_->channels == 0);
    // Floats mostly lie in memory as they do in the file.
    const bool alike =
        state_->format == SampleFormat::float32 && std::endian::native == std::endian::little;
    if (!(alike ? state_->putFloats(samples) : state_->putEncoded(samples)))
        state_->fail(errno);
    state_->frames = checkedAdd(state_->frames, std::ssize(samples) / state_->channels);
}

void WaveWriter::close() {
    if (state_->file == nullptr)
        return;
    int reason = state_->finish() ? 0 : errno;
    if (std::fclose(std::exchange(state_->file, nullptr)) != 0 && reason == 0)
        reason = errno;
    if (reason != 0)
        state_->fail(reason);
}

}
