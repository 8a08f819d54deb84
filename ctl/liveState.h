#pragma once

#include "ctl/Rounds.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tallyvox {

/// One line on an announcement that has lasted `seconds` and played `frames` frames: the time, the
/// round, in turn the channel that speaks, and the xruns where they are counted.
std::string liveState(double seconds, std::int64_t frames, const Rounds& rounds,
                      std::optional<std::uint64_t> xruns);

}
