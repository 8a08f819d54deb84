#include "audio/xruns.h"

#include "audio/devices.h"

namespace tallyvox {

std::optional<std::uint64_t> xruns(std::uint32_t device, Hardware& hardware) {
    std::uint64_t count = 0;
    std::uint32_t bytes = sizeof(count);
    const auto status = hardware.propertyData(device, address(kDevicePropertyXruns), bytes, &count);
    return status == 0 && bytes == sizeof count ? std::optional(count) : std::nullopt;
}

}
