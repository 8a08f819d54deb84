#pragma once

#include <cstddef>

namespace tallyvox {

/// The size and alignment from which memory can lie on large pages.
inline constexpr std::size_t largePage = std::size_t{2} << 20U;

/// Asks the system to back memory that nobody has touched yet with large pages. A hint: where the
/// system has none, the memory stays as it is.
void preferLargePages(void* memory, std::size_t bytes) noexcept;

}
