#include "platform/linux/pipewire/Graph.h"

#include <algorithm>
#include <utility>

namespace tallyvox {

bool Graph::Rates::contain(std::int64_t rate) const {
    if (isRange && values.size() == 3)
        return rate >= values[1] && rate <= values[2];
    return std::ranges::find(values, rate) != values.end();
}

std::vector<std::uint32_t> Graph::audioPorts(std::uint32_t node, bool input) const {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> found;
    for (const auto& [id, port] : ports)
        if (port.node == node && port.input == input && port.audio)
            found.emplace_back(port.index, id);
    std::ranges::sort(found);
    std::vector<std::uint32_t> ids;
    ids.reserve(found.size());
    for (const auto& [index, id] : found)
        ids.push_back(id);
    return ids;
}

std::int64_t Graph::rate(const Node& node) const {
    if (forcedRate > 0)
        return forcedRate;
    const auto& offered = node.formatRates.values;
    if (offered.size() == 1)
        return offered.front();
    if (node.audioRate)
        return *node.audioRate;
    if (offered.empty() || node.formatRates.contain(clockRate))
        return clockRate;
    return offered.front();
}

std::vector<Graph::Device> Graph::devices() const {
    std::vector<std::pair<std::uint64_t, Device>> found;
    for (const auto& [id, node] : nodes) {
        if (node.mediaClass != "Audio/Sink" && node.mediaClass != "Audio/Duplex")
            continue;
        auto inputs = audioPorts(id, true);
        std::vector<std::uint32_t> buffers(inputs.size(), 1);
        found.push_back({node.serial,
                         {{deviceId(LayerTag::pipewire, node.serial), node.name, std::move(buffers),
                           static_cast<double>(rate(node))},
                          id,
                          std::move(inputs)}});
    }
    std::ranges::sort(found, {}, [](const auto& pair) { return pair.first; });
    std::vector<Device> devices;
    devices.reserve(found.size());
    for (auto& [serial, device] : found)
        devices.push_back(std::move(device));
    return devices;
}

}
