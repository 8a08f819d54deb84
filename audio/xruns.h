#pragma once

#include "audio/Hardware.h"

#include <cstdint>
#include <optional>

namespace tallyvox {

/// How often `device` could not be served in time since its stream was opened, or nothing where its
/// layer does not count.
std::optional<std::uint64_t> xruns(std::uint32_t device, Hardware& hardware = tallyvox::hardware());

}
