#pragma once

#include "audio/Hardware.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallyvox {

/// No honest answer is longer, in bytes: a size beyond it is refused before memory is taken.
inline constexpr std::uint32_t kLongestProperty = 1U << 18U;

/// Reads a property of variable length into `values`: as many whole elements as its size holds,
/// zero where the answer is shorter. Answers the first status that is not 0.
template<typename T>
std::int32_t readArray(Hardware& hardware, std::uint32_t object,
                       const AudioObjectPropertyAddress& address, std::vector<T>& values) {
    std::uint32_t bytes = 0;
    if (const auto status = hardware.propertyDataSize(object, address, bytes); status != 0)
        return status;
    if (bytes > kLongestProperty)
        return kAudioHardwareBadPropertySizeError;
    values.assign(bytes / sizeof(T), T{});
    bytes = static_cast<std::uint32_t>(values.size() * sizeof(T));
    return hardware.propertyData(object, address, bytes, values.data());
}

/// Reads a property of fixed length over `fallback`, whatever the status: what the layer left
/// alone, or answered in part, stays the fallback.
template<typename T>
T readValue(Hardware& hardware, std::uint32_t object, const AudioObjectPropertyAddress& address,
            T fallback) {
    T value = fallback;
    std::uint32_t bytes = sizeof value;
    hardware.propertyData(object, address, bytes, &value);
    return bytes == sizeof value ? value : fallback;
}

}
