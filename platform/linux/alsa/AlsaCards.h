#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallyvox {

/// One playback device of a sound card that is plugged in now.
struct AlsaDevice {
    std::uint32_t id; ///< of the card in this place and the device on it
    std::string name; ///< for people
    std::string pcm;  ///< for ALSA
};

/// All of them, in ALSA's order; empty where the system has none. A card that does not answer is
/// left out.
std::vector<AlsaDevice> alsaDevices();

}
