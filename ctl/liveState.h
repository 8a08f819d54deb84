#pragma once

#include "ctl/Rounds.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tallyvox {

/// One line on an announcement that has played for `seconds` at `rate` Hz: the time, the round, in
/// turn the channel that speaks, and the xruns where they are counted.
std::string liveState(double seconds, double rate, const Rounds& rounds,
                      std::optional<std::uint64_t> xruns);

}
