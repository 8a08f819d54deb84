#include "platform/linux/makeHardware.h"

#include "platform/common/PropertyServer.h"
#include "platform/linux/alsa/AlsaLayer.h"
#include "platform/linux/jack/JackLayer.h"
#include "platform/linux/pipewire/pipewireLayer.h"
#include "platform/virtual/virtualLayer.h"

#include <ostream>
#include <utility>
#include <vector>

namespace tallyvox {

namespace {

using Layers = std::vector<std::unique_ptr<Layer>>;

constexpr std::string_view kVirtual = "virtual:";

}

std::unique_ptr<Hardware> makeHardware(std::string_view choice, const std::filesystem::path& record,
                                       std::ostream& complaints) {
    Layers servers;
    Layers fallback;
    if (choice.empty()) {
        servers.push_back(makePipewireLayer());
        servers.push_back(makeJackLayer(JackServers::own));
        fallback.push_back(makeAlsaLayer());
    } else if (choice == "pipewire") {
        servers.push_back(makePipewireLayer());
    } else if (choice == "jack") {
        servers.push_back(makeJackLayer(JackServers::any));
    } else if (choice == "alsa") {
        servers.push_back(makeAlsaLayer());
    } else if (choice.starts_with(kVirtual)) {
        if (auto devices = parseVirtualDevices(choice.substr(kVirtual.size())))
            servers.push_back(makeVirtualLayer(*std::move(devices), record));
    }
    if (servers.empty() && fallback.empty())
        complaints << "TALLYVOX_AUDIO=" << choice
                   << " cannot be read: expected pipewire, jack, alsa or "
                      "virtual:CHANNELS@RATE,CHANNELS@RATE...\n";
    return std::make_unique<PropertyServer>(std::move(servers), std::move(fallback));
}

}
