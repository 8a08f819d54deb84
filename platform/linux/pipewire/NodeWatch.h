#pragma once

#include "platform/linux/pipewire/Graph.h"

#include <pipewire/pipewire.h>

#include <cstdint>
#include <functional>

namespace tallyvox {

/// Keeps what a server tells of one node up to date in its entry of a graph. Lives and works under
/// the lock of the connection.
class NodeWatch {
public:
    /// `changed` is called after each change of `node`.
    NodeWatch(pw_registry* registry, std::uint32_t id, Graph::Node& node,
              std::function<void()> changed);
    NodeWatch(const NodeWatch&) = delete;
    NodeWatch& operator=(const NodeWatch&) = delete;
    ~NodeWatch();

private:
    struct Events;

    Graph::Node& node_;
    std::function<void()> changed_;
    pw_proxy* proxy_;
    spa_hook hook_{};
};

/// Takes over what `properties` tell of a node.
void describeNode(Graph::Node& node, const spa_dict& properties);

}
