#include "platform/linux/pipewire/NodeWatch.h"

#include "platform/linux/pipewire/formatRates.h"
#include "platform/linux/pipewire/properties.h"

#include <array>
#include <utility>

namespace tallyvox {

struct NodeWatch::Events {
    static void info(void* data, const pw_node_info* info) {
        auto& watch = *static_cast<NodeWatch*>(data);
        if ((info->change_mask & PW_NODE_CHANGE_MASK_PROPS) == 0 || info->props == nullptr)
            return;
        describeNode(watch.node_, *info->props);
        watch.changed_();
    }

    static void param(void* data, int, std::uint32_t id, std::uint32_t index, std::uint32_t,
                      const spa_pod* param) {
        auto& watch = *static_cast<NodeWatch*>(data);
        if (id != SPA_PARAM_EnumFormat)
            return;
        // The formats come in the order of preference; a change begins with the first again.
        if (index == 0)
            watch.node_.formatRates = {};
        if (watch.node_.formatRates.values.empty())
            watch.node_.formatRates = formatRates(param);
        watch.changed_();
    }

    static constexpr pw_node_events all{
        .version = PW_VERSION_NODE_EVENTS, .info = info, .param = param};
};

NodeWatch::NodeWatch(pw_registry* registry, std::uint32_t id, Graph::Node& node,
                     std::function<void()> changed)
    : node_(node),
      changed_(std::move(changed)),
      proxy_(static_cast<pw_proxy*>(
          pw_registry_bind(registry, id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0))) {
    if (proxy_ == nullptr)
        return;
    auto* const bound = reinterpret_cast<pw_node*>(proxy_);
    pw_node_add_listener(bound, &hook_, &Events::all, this);
    std::array<std::uint32_t, 1> wanted{SPA_PARAM_EnumFormat};
    pw_node_subscribe_params(bound, wanted.data(), wanted.size());
}

NodeWatch::~NodeWatch() {
    if (proxy_ == nullptr)
        return;
    spa_hook_remove(&hook_);
    pw_proxy_destroy(proxy_);
}

void describeNode(Graph::Node& node, const spa_dict& properties) {
    for (const char* key : {PW_KEY_NODE_NAME, PW_KEY_NODE_NICK, PW_KEY_NODE_DESCRIPTION})
        if (const auto name = text(properties, key); !name.empty())
            node.name = name;
    if (const auto rate = number(properties, PW_KEY_AUDIO_RATE); rate && *rate > 0)
        node.audioRate = *rate;
}

}
