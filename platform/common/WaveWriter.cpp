#include "engine/WaveWriter.h"

#include "base/Error.h"
#include "base/checked.h"
#include "platform/common/OutputFile.h"
#include "platform/common/waveHeader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <system_error>
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

std::uint32_t pattern(float sample, SampleFormat format) noexcept {
    switch (format) {
    case SampleFormat::float32:
        return std::bit_cast<std::uint32_t>(sample);
    case SampleFormat::pcm24:
        return quantised(sample, 0x1p23);
    case SampleFormat::pcm16:
        return quantised(sample, 0x1p15);
    }
    fatal();
}

std::span<const std::uint8_t> bytesOf(std::span<const float> samples) noexcept {
    return {reinterpret_cast<const std::uint8_t*>(samples.data()), samples.size_bytes()};
}

}

struct WaveWriter::State {
    std::filesystem::path path;
    std::int64_t channels;
    double rate;
    SampleFormat format;
    OutputFile file{};
    std::vector<std::uint8_t> encoded{};

    std::vector<std::uint8_t> header(std::int64_t frames) const {
        return waveHeader(channels, rate, format, frames);
    }

    /// Throws unless `failure` is none.
    void check(int failure) const {
        if (failure != 0)
            throw Error("POSIX", failure,
                        "Cannot write \"" + path.string() +
                            "\": " + std::generic_category().message(failure) + ".");
    }

    std::span<const std::uint8_t> encode(std::span<const float> samples) {
        const std::int64_t width = bytesPerSample(format);
        encoded.resize(samples.size() * static_cast<std::size_t>(width));
        std::uint8_t* to = encoded.data();
        for (const float sample : samples) {
            store(to, pattern(sample, format), width);
            to += width;
        }
        return encoded;
    }

    /// Writes the final header and the byte that ends an odd number of them.
    int finish() {
        const int flushed = file.flush();
        const std::int64_t frameBytes = channels * bytesPerSample(format);
        const std::int64_t before = std::ssize(header(0));
        const std::int64_t frames = std::max<std::int64_t>(file.written() - before, 0) / frameBytes;
        const std::int64_t dataBytes = frames * frameBytes;
        constexpr std::array<std::uint8_t, 1> padding{};
        const int padded = dataBytes % 2 == 0 ? 0 : file.overwrite(before + dataBytes, padding);
        const int headed = file.overwrite(0, header(frames));
        const int closed = file.close();
        for (const int failure : {flushed, padded, headed, closed})
            if (failure != 0)
                return failure;
        return 0;
    }
};

WaveWriter::WaveWriter(const std::filesystem::path& path, std::int64_t channels, double rate,
                       SampleFormat format, std::size_t block)
    : state_(new State{path, channels, rate, format}) {
    const auto header = state_->header(0);
    state_->check(state_->file.open(path, block));
    state_->check(state_->file.append(header));
}

WaveWriter::~WaveWriter() {
    try {
        close();
    } catch (const Error&) {
        // Only `close` reports; whoever needs the file complete calls it.
    }
}

void WaveWriter::write(std::span<const float> samples) {
    require(state_->file.isOpen() && std::ssize(samples) % state_->channels == 0);
    // Floats mostly lie in memory as they do in the file.
    const bool alike =
        state_->format == SampleFormat::float32 && std::endian::native == std::endian::little;
    state_->check(state_->file.append(alike ? bytesOf(samples) : state_->encode(samples)));
}

void WaveWriter::close() {
    if (state_->file.isOpen())
        state_->check(state_->finish());
}

}
