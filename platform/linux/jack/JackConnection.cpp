#include "platform/linux/jack/JackConnection.h"

#include "platform/common/Layer.h"

#include <algorithm>
#include <string_view>

namespace tallyvox {
namespace {

bool isEmulation() {
    const char* version = jack_get_version_string();
    return version != nullptr && std::string_view(version).find("PipeWire") != std::string::npos;
}

}

JackClient* JackConnection::client() {
    if (client_ && client_->lost()) {
        // libjack keeps one server's state a process and closes what is left over by itself when
        // it meets the next server: the clients of the old one must all be gone before.
        for (const auto& other : others_)
            if (const auto slot = other.lock())
                slot->reset();
        others_.clear();
        client_.reset();
    }
    if (!client_ && (servers_ == JackServers::any || !isEmulation()))
        client_ = JackClient::open("tallyvox-outputs");
    return client_.get();
}

std::shared_ptr<std::unique_ptr<JackClient>> JackConnection::open(const char* name) {
    if (client() == nullptr)
        return nullptr;
    auto slot = std::make_shared<std::unique_ptr<JackClient>>(JackClient::open(name));
    if (!*slot)
        return nullptr;
    std::erase_if(others_, [](const auto& other) { return other.expired(); });
    others_.push_back(slot);
    return slot;
}

std::optional<JackDevice> JackConnection::find(std::uint32_t id) {
    const auto* asking = client();
    if (asking == nullptr)
        return std::nullopt;
    for (auto& device : asking->devices())
        if (deviceId(LayerTag::jack, device.uuid) == id)
            return std::move(device);
    return std::nullopt;
}

}
