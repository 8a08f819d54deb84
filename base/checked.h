#pragma once

#include "base/fatal.h"

#include <concepts>
#include <cstdint>
#include <utility>

namespace tallyvox {

/// `a + b`; an overflow is fatal. Real-time: safe.
inline std::int64_t checkedAdd(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t sum = 0;
    require(!__builtin_add_overflow(a, b, &sum));
    return sum;
}

/// `a * b`; an overflow is fatal. Real-time: safe.
inline std::int64_t checkedMultiply(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t product = 0;
    require(!__builtin_mul_overflow(a, b, &product));
    return product;
}

/// `value` as a `To`; a value that `To` cannot hold is fatal. Real-time: safe.
template<std::integral To, std::integral From>
constexpr To checkedCast(From value) noexcept {
    require(std::in_range<To>(value));
    return static_cast<To>(value);
}

/// `value` truncated toward zero; a value that is not finite, or that 64 bits cannot hold after
/// the truncation, is fatal. Real-time: safe.
inline std::int64_t checkedTruncate(double value) noexcept {
    // 2^63 is a double, 2^63 - 1 is not: the upper bound is excluded, the lower one included.
    // Both comparisons are false for a NaN.
    require(value >= -0x1p63 && value < 0x1p63);
    return static_cast<std::int64_t>(value);
}

}
