#pragma once

#include <cstdint>
#include <string>

namespace tallyvox {

/// One line on how loud `channels` channels that speak at once, each with peaks of `db` dBFS, can
/// become where they meet: all peaks aligned, and uncorrelated.
std::string loudness(std::int64_t channels, double db);

}
