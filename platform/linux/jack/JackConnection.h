#pragma once

#include "platform/linux/jack/JackClient.h"

#include <memory>
#include <optional>
#include <vector>

namespace tallyvox {

/// Whose servers a layer serves.
enum class JackServers {
    own, ///< JACK's own; not PipeWire's emulation, whose devices PipeWire lists itself
    any,
};

/// The layer's lasting connection to the server, renewed when the server returns. All operations
/// are for the worker thread.
class JackConnection {
public:
    explicit JackConnection(JackServers servers) : servers_(servers) {}

    /// The client that asks for devices, connected afresh where the old server has gone; null
    /// where no server answers.
    JackClient* client();

    /// Another client of the server, closed with the connection if not by its owner before; empty
    /// where no server answers.
    std::shared_ptr<std::unique_ptr<JackClient>> open(const char* name);

    /// The device whose uuid makes `id`, as it is now.
    std::optional<JackDevice> find(std::uint32_t id);

private:
    JackServers servers_;
    std::unique_ptr<JackClient> client_;
    std::vector<std::weak_ptr<std::unique_ptr<JackClient>>> others_;
};

}
