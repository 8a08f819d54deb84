#pragma once

#include "platform/common/Layer.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// What a server told of its nodes, ports and settings. Plain data: no server is asked.
struct Graph {
    /// The rates in Hz that a format offers: the one it prefers first; more than one where the
    /// node can be switched.
    struct Rates {
        std::vector<std::int64_t> values;
        bool isRange = false; ///< `values` is the preferred one, the lowest and the highest

        bool contain(std::int64_t rate) const;
    };

    struct Node {
        std::uint64_t serial = 0; ///< never reused while the server runs
        std::string mediaClass{};
        std::string name{}; ///< what people read
        Rates formatRates{};
        std::optional<std::int64_t> audioRate{}; ///< the property of that name
    };

    struct Port {
        std::uint32_t node = 0;
        std::uint32_t index = 0; ///< its place among the node's ports of its direction
        bool input = false;
        bool audio = false; ///< takes or gives single channels of 32-bit floats
    };

    /// An output device, with what a stream needs to reach it.
    struct Device {
        DeviceRecord record;
        std::uint32_t node;
        std::vector<std::uint32_t> ports; ///< the global ids of its inputs, channel by channel
    };

    std::map<std::uint32_t, Node> nodes{}; ///< by global id
    std::map<std::uint32_t, Port> ports{}; ///< by global id
    std::int64_t clockRate = 48000;        ///< of the graph, unless a node asks for another
    std::int64_t forcedRate = 0;           ///< of the graph whatever nodes ask for, 0 for none

    /// The global ids of a node's audio ports of one direction, in their own order.
    std::vector<std::uint32_t> audioPorts(std::uint32_t node, bool input) const;

    /// The rate in Hz at which `node` plays without conversion once a stream asks for it.
    std::int64_t rate(const Node& node) const;

    /// Every sink, in the order of their creation.
    std::vector<Device> devices() const;
};

}
