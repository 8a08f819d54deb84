#include "platform/linux/alsa/sampleFormat.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tallyvox {
namespace {

/// Real-time: `sample` as a signed integer of `Bits` bits.
template<int Bits>
std::int32_t quantized(float sample) noexcept {
    constexpr double scale = static_cast<double>(std::int64_t{1} << (Bits - 1));
    if (std::isnan(sample))
        return 0;
    const double value = std::nearbyint(static_cast<double>(sample) * scale);
    return static_cast<std::int32_t>(std::clamp(value, -scale, scale - 1));
}

/// Real-time: hands each sample of a run to `write`, with the place that it belongs to.
template<typename Write>
void each(const float* source, std::size_t count, std::byte* target, std::size_t stride,
          Write write) noexcept {
    for (std::size_t i = 0; i < count; ++i)
        write(source[i], target + i * stride);
}

}

std::size_t sampleSize(SampleFormat format) noexcept {
    switch (format) {
    case SampleFormat::int16:
        return 2;
    case SampleFormat::packed24:
        return 3;
    case SampleFormat::float32:
    case SampleFormat::int32:
    case SampleFormat::int24:
        break;
    }
    return 4;
}

void convertSamples(const float* source, std::size_t count, SampleFormat format, std::byte* target,
                    std::size_t stride) noexcept {
    switch (format) {
    case SampleFormat::float32:
        return each(source, count, target, stride, [](float sample, std::byte* place) {
            std::memcpy(place, &sample, sizeof sample);
        });
    case SampleFormat::int32:
        return each(source, count, target, stride, [](float sample, std::byte* place) {
            const auto value = quantized<32>(sample);
            std::memcpy(place, &value, sizeof value);
        });
    case SampleFormat::int24:
        return each(source, count, target, stride, [](float sample, std::byte* place) {
            const auto value = quantized<24>(sample);
            std::memcpy(place, &value, sizeof value);
        });
    case SampleFormat::packed24:
        return each(source, count, target, stride, [](float sample, std::byte* place) {
            const auto value = static_cast<std::uint32_t>(quantized<24>(sample));
            for (unsigned i = 0; i < 3; ++i)
                place[i] = static_cast<std::byte>(value >> (8 * i) & 0xFFU);
        });
    case SampleFormat::int16:
        return each(source, count, target, stride, [](float sample, std::byte* place) {
            const auto value = static_cast<std::int16_t>(quantized<16>(sample));
            std::memcpy(place, &value, sizeof value);
        });
    }
}

}
