#pragma once

namespace tallyvox {

/// Makes writes to the regular file `descriptor` go past the file cache, or through it again.
/// Answers whether the file system does that. Past the cache it may refuse a write (`EINVAL`) that
/// does not begin and end, in the file and in memory, at multiples of its blocks.
bool bypassFileCache(int descriptor, bool bypass) noexcept;

}
