#pragma once

#include "audio/Hardware.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tallyvox {

/// One output device as the catalogue found it.
struct OutputDevice {
    std::uint32_t id;      ///< object id in the hardware layer, also the record's identity
    std::string name;      ///< UTF-8, or "Unknown output"
    std::int64_t channels; ///< output channels over all streams, at least 1 in a listed record
    double rate;           ///< nominal rate in Hz, 0 where it cannot be read

    bool operator==(const OutputDevice&) const = default;
};

/// The address of a property at the main element, in the global scope unless another is given.
AudioObjectPropertyAddress address(std::uint32_t selector,
                                   std::uint32_t scope = kAudioObjectPropertyScopeGlobal) noexcept;

/// Every device with at least one output channel, in the hardware layer's order, read afresh.
/// Never throws: what cannot be read is left out or replaced by its default.
std::vector<OutputDevice> devices(Hardware& hardware = tallyvox::hardware());

}
