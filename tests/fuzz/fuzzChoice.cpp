// TALLYVOX_AUDIO of any content: devices that can be served, or none at all.

#include "audio/devices.h"
#include "base/fatal.h"
#include "platform/common/PropertyServer.h"
#include "platform/virtual/virtualLayer.h"

#include <string_view>
#include <utility>

namespace tallyvox {

Hardware& hardware() { fatal(); }

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace tallyvox;
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    const auto chosen = parseVirtualDevices(text);
    if (!chosen)
        return 0;
    require(!chosen->empty());
    std::vector<std::unique_ptr<Layer>> layers;
    layers.push_back(makeVirtualLayer(*chosen, {}));
    PropertyServer server(std::move(layers));
    const auto listed = devices(server);
    require(listed.size() == chosen->size());
    for (std::size_t i = 0; i < listed.size(); ++i) {
        require(listed[i].channels == (*chosen)[i].channels && listed[i].channels >= 1);
        require(listed[i].rate == (*chosen)[i].rate && listed[i].rate >= 0);
    }
    return 0;
}
