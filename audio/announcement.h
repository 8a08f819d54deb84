#pragma once

#include "engine/Renderer.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tallyvox {

/// Voices exist for the numbers up to here, whatever a device offers.
inline constexpr std::int64_t kVoices = 128;

/// The renderer of an announcement on `channels` channels at `rate` Hz: loads the voice of every
/// channel up to the 128th, cuts `enabled` to them, and turns `db` into a linear gain and `gap`
/// seconds into frames. Throws what loading throws; fewer than one channel and a gap that is no
/// frame count are fatal.
std::shared_ptr<Renderer> announcement(std::int64_t channels, double rate,
                                       std::vector<bool> enabled, double db, double gap,
                                       bool sequential);

}
