#pragma once

#include "platform/common/Layer.h"
#include "tests/support/eventually.h"

#include <string>

namespace tallyvox {

/// The device `name` of `layer` once it has `channels` channels; one of id 0 where that never
/// happens.
inline DeviceRecord await(Layer& layer, const std::string& name, std::size_t channels) {
    DeviceRecord found{};
    eventually([&] {
        const auto devices = layer.devices().value_or(std::vector<DeviceRecord>{});
        for (const DeviceRecord& device : devices)
            if (device.name == name && device.buffers.size() == channels)
                found = device;
        return found.id != 0;
    });
    return found;
}

}
