#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <span>

namespace tallyvox {

/// Whether two samples are the same to the bit. What is no number is alike: which of two such
/// operands a sum or product hands on is the processor's choice.
inline bool alike(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

/// The same of two arrays.
inline bool alike(std::span<const float> a, std::span<const float> b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!alike(a[i], b[i]))
            return false;
    return true;
}

}
