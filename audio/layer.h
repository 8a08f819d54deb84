#pragma once

#include "audio/Hardware.h"

#include <cstdint>
#include <string>

namespace tallyvox {

/// The name of the audio layer that serves `device` ("pipewire", "jack", …); empty where the system
/// tells none.
std::string layer(std::uint32_t device, Hardware& hardware = tallyvox::hardware());

}
