#include "audio/layer.h"

#include "audio/devices.h"
#include "audio/property.h"

namespace tallyvox {

std::string layer(std::uint32_t device, Hardware& hardware) {
    const void* none = nullptr;
    const void* reference = readValue(hardware, device, address(kDevicePropertyLayer), none);
    return reference == nullptr ? std::string() : hardware.takeString(reference);
}

}
