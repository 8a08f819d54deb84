#pragma once

#include "platform/common/Layer.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tallyvox {

/// An output that exists in this process only.
struct VirtualDevice {
    std::int64_t channels; ///< 1 to 1024
    double rate;           ///< Hz, 1 to 1000000, or 0: a device that cannot play

    bool operator==(const VirtualDevice&) const = default;
};

/// The devices of a list such as "8@44100,64@48000", or nothing where it cannot be read.
std::optional<std::vector<VirtualDevice>> parseVirtualDevices(std::string_view list);

/// A layer of `devices`, each called in real time on a thread of its own with one interleaved
/// buffer. Unless `record` is empty, the device that plays writes what it received to that file,
/// afresh at each start; one line on standard error tells when that fails.
std::unique_ptr<Layer> makeVirtualLayer(std::vector<VirtualDevice> devices,
                                        std::filesystem::path record);

}
