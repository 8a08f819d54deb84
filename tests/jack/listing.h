#pragma once

#include "platform/common/Layer.h"
#include "tests/support/eventually.h"

#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// The names that `layer` lists now.
inline std::vector<std::string> names(Layer& layer) {
    std::vector<std::string> names;
    for (const auto& device : layer.devices().value_or(std::vector<DeviceRecord>{}))
        names.push_back(device.name);
    return names;
}

/// The device that `layer` lists by `name` now.
inline std::optional<DeviceRecord> find(Layer& layer, const std::string& name) {
    for (const auto& device : layer.devices().value_or(std::vector<DeviceRecord>{}))
        if (device.name == name)
            return device;
    return std::nullopt;
}

/// The device that `layer` lists by `name` as soon as a busy machine lets it; throws where it never
/// does.
inline DeviceRecord await(Layer& layer, const std::string& name) {
    std::optional<DeviceRecord> found;
    eventually([&] { return (found = find(layer, name)).has_value(); });
    return found.value();
}

}
