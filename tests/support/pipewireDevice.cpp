// An output device for tests: a PipeWire client that is a sink, or that listens to the monitor of
// one, and that may capture what it gets.
//   pipewire_device NAME CHANNELS RATE [FILE FRAMES]
//   pipewire_device --monitor NODE CHANNELS FILE FRAMES
// Prints "ready" when it can be used, and "captured" when FILE holds FRAMES frames ("captured late"
// where the machine did not keep up and cycles between them are missing), the first of which is the
// first that was not silent on all channels: one 32-bit float a channel. Before that it prints
// "another rate from FRAME" where the graph's rate changed during the capture.

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

struct Device {
    pw_main_loop* loop = nullptr;
    pw_core* core = nullptr;
    pw_registry* registry = nullptr;
    pw_filter* filter = nullptr;
    std::vector<void*> ports;
    std::vector<const float*> inputs;

    std::string file;
    std::size_t frames = 0;
    std::size_t captured = 0;
    bool started = false;
    std::vector<float> samples;
    std::uint64_t next = 0;                   ///< where the graph's next cycle begins
    bool late = false;                        ///< a cycle was missed during the capture
    std::uint32_t rate = 0;                   ///< of the latest cycle
    std::optional<std::size_t> otherRateFrom; ///< the first frame captured at another rate

    std::string monitored;
    std::uint32_t monitoredNode = SPA_ID_INVALID;
    std::map<std::uint32_t, std::uint32_t> monitorPorts; ///< global ids by port id
    std::map<std::uint32_t, std::uint32_t> ownPorts;
    struct Port {
        std::uint32_t id;
        std::uint32_t node;
        std::uint32_t index;
        bool output;
    };
    std::vector<Port> known;
    bool linked = false;
    bool hearing = false; ///< every port has had a buffer

    std::size_t channels() const { return ports.size(); }
};

/// Runs on the main loop: the samples are in memory.
int save(spa_loop*, bool, std::uint32_t, const void*, std::size_t, void* data) {
    auto& device = *static_cast<Device*>(data);
    std::ofstream file(device.file, std::ios::binary);
    file.write(reinterpret_cast<const char*>(device.samples.data()),
               static_cast<std::streamsize>(device.samples.size() * sizeof(float)));
    file.close();
    if (device.otherRateFrom)
        std::cout << "another rate from " << *device.otherRateFrom << '\n';
    std::cout << (!file ? "lost" : device.late ? "captured late" : "captured") << std::endl;
    return 0;
}

int tellReady(spa_loop*, bool, std::uint32_t, const void*, std::size_t, void*) {
    std::cout << "ready" << std::endl;
    return 0;
}

/// Real-time: appends the cycle's frames to the capture, once one is not silent.
void process(void* data, spa_io_position* position) {
    auto& device = *static_cast<Device*>(data);
    const auto count = static_cast<std::uint32_t>(position->clock.duration);
    for (std::size_t channel = 0; channel < device.channels(); ++channel)
        device.inputs[channel] =
            static_cast<const float*>(pw_filter_get_dsp_buffer(device.ports[channel], count));
    const bool all = std::ranges::find(device.inputs, nullptr) == device.inputs.end();
    if (!device.monitored.empty() && !device.hearing && all) {
        device.hearing = true;
        pw_loop_invoke(pw_main_loop_get_loop(device.loop), tellReady, 0, nullptr, 0, false,
                       nullptr);
    }
    if (device.captured == device.frames)
        return;
    // A driver that changes its rate begins to count afresh.
    const bool sameRate = std::exchange(device.rate, position->clock.rate.denom) == device.rate;
    if (device.started && !sameRate && !device.otherRateFrom)
        device.otherRateFrom = device.captured;
    device.late =
        device.late || (device.started && sameRate && position->clock.position != device.next);
    device.next = position->clock.position + position->clock.duration;
    for (std::uint32_t frame = 0; frame < count && device.captured < device.frames; ++frame) {
        float* const target = &device.samples[device.captured * device.channels()];
        for (std::size_t channel = 0; channel < device.channels(); ++channel)
            target[channel] =
                device.inputs[channel] != nullptr ? device.inputs[channel][frame] : 0.0F;
        device.started = device.started || std::any_of(target, target + device.channels(),
                                                       [](float sample) { return sample != 0.0F; });
        if (device.started)
            ++device.captured;
    }
    if (device.captured == device.frames)
        pw_loop_invoke(pw_main_loop_get_loop(device.loop), save, 0, nullptr, 0, false, &device);
}

void link(Device& device) {
    for (std::size_t channel = 0; channel < device.channels(); ++channel) {
        pw_properties* const properties = pw_properties_new("object.linger", "true", nullptr);
        const auto index = static_cast<std::uint32_t>(channel);
        pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", device.monitoredNode);
        pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", device.monitorPorts[index]);
        pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u",
                           pw_filter_get_node_id(device.filter));
        pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", device.ownPorts[index]);
        pw_core_create_object(device.core, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK,
                              &properties->dict, 0);
        pw_properties_free(properties);
    }
    device.linked = true;
    pw_core_sync(device.core, PW_ID_CORE, 0);
}

void done(void* data, std::uint32_t, int) {
    auto& device = *static_cast<Device*>(data);
    if (device.ports.empty())
        return;
    const std::uint32_t own = pw_filter_get_node_id(device.filter);
    for (const Device::Port& port : device.known) {
        if (port.node == device.monitoredNode && port.output)
            device.monitorPorts[port.index] = port.id;
        if (port.node == own && !port.output)
            device.ownPorts[port.index] = port.id;
    }
    const bool monitors = !device.monitored.empty();
    if (monitors && !device.linked && device.monitorPorts.size() >= device.channels() &&
        device.ownPorts.size() >= device.channels()) {
        link(device);
        return;
    }
    static bool told = false;
    if (monitors || told || device.ownPorts.size() < device.channels())
        return;
    told = true;
    tellReady(nullptr, false, 0, nullptr, 0, nullptr);
}

void global(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
            const spa_dict* properties) {
    auto& device = *static_cast<Device*>(data);
    const std::string_view kind = type;
    const auto text = [&](const char* key) {
        const char* const value = spa_dict_lookup(properties, key);
        return std::string_view(value != nullptr ? value : "");
    };
    const auto number = [&](const char* key) {
        return static_cast<std::uint32_t>(std::strtoul(text(key).data(), nullptr, 10));
    };
    if (kind == PW_TYPE_INTERFACE_Node && text(PW_KEY_NODE_NAME) == device.monitored)
        device.monitoredNode = id;
    if (kind == PW_TYPE_INTERFACE_Port)
        device.known.push_back({id, number(PW_KEY_NODE_ID), number(PW_KEY_PORT_ID),
                                text(PW_KEY_PORT_DIRECTION) == "out"});
    pw_core_sync(device.core, PW_ID_CORE, 0);
}

void stateChanged(void* data, pw_filter_state, pw_filter_state, const char*) {
    pw_core_sync(static_cast<Device*>(data)->core, PW_ID_CORE, 0);
}

void lost(void* data, std::uint32_t id, int, int, const char*) {
    if (id == PW_ID_CORE)
        pw_main_loop_quit(static_cast<Device*>(data)->loop);
}

void narrow(void* data, int) {
    auto& device = *static_cast<Device*>(data);
    pw_filter_remove_port(device.ports.back());
    device.ports.pop_back();
}

void quit(void* data, int) { pw_main_loop_quit(static_cast<Device*>(data)->loop); }

constexpr pw_core_events kCoreEvents{
    .version = PW_VERSION_CORE_EVENTS, .done = done, .error = lost};
constexpr pw_registry_events kRegistryEvents{.version = PW_VERSION_REGISTRY_EVENTS,
                                             .global = global};
constexpr pw_filter_events kFilterEvents{
    .version = PW_VERSION_FILTER_EVENTS, .state_changed = stateChanged, .process = process};

}

int main(int count, char** arguments) {
    std::vector<std::string> words(arguments + 1, arguments + count);
    static Device device;
    std::string rate = "0";
    if (words.size() == 5 && words[0] == "--monitor") {
        device.monitored = words[1];
        words = {"monitor-of-" + words[1], words[2], rate, words[3], words[4]};
    }
    if (words.size() != 3 && words.size() != 5)
        return 2;
    rate = words[2];
    const auto channels = static_cast<std::size_t>(std::stoul(words[1]));
    if (words.size() == 5) {
        device.file = words[3];
        device.frames = std::stoul(words[4]);
        device.samples.resize(device.frames * channels);
    }

    pw_init(nullptr, nullptr);
    device.loop = pw_main_loop_new(nullptr);
    pw_loop* const loop = pw_main_loop_get_loop(device.loop);
    pw_loop_add_signal(loop, SIGTERM, quit, &device);
    pw_loop_add_signal(loop, SIGINT, quit, &device);
    pw_loop_add_signal(loop, SIGUSR1, narrow, &device);
    pw_context* const context =
        pw_context_new(loop, pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
    device.core = pw_context_connect(context, nullptr, 0);
    if (device.core == nullptr)
        return 1;
    spa_hook coreHook{};
    spa_hook registryHook{};
    spa_hook filterHook{};
    pw_core_add_listener(device.core, &coreHook, &kCoreEvents, &device);
    device.registry = pw_core_get_registry(device.core, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(device.registry, &registryHook, &kRegistryEvents, &device);

    pw_properties* const properties = pw_properties_new(
        PW_KEY_NODE_NAME, words[0].c_str(), PW_KEY_NODE_DESCRIPTION, words[0].c_str(), nullptr);
    if (device.monitored.empty()) {
        pw_properties_set(properties, PW_KEY_MEDIA_CLASS, "Audio/Sink");
        pw_properties_set(properties, PW_KEY_AUDIO_RATE, rate.c_str());
        pw_properties_set(properties, PW_KEY_NODE_WANT_DRIVER, "true");
    }
    device.filter = pw_filter_new(device.core, words[0].c_str(), properties);
    pw_filter_add_listener(device.filter, &filterHook, &kFilterEvents, &device);
    device.inputs.resize(channels);
    for (std::size_t channel = 0; channel < channels; ++channel)
        device.ports.push_back(pw_filter_add_port(
            device.filter, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void*),
            pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                              ("in_" + std::to_string(channel + 1)).c_str(), PW_KEY_PORT_PHYSICAL,
                              "true", PW_KEY_PORT_TERMINAL, "true", nullptr),
            nullptr, 0));
    if (pw_filter_connect(device.filter, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) != 0)
        return 1;
    pw_main_loop_run(device.loop);

    pw_filter_destroy(device.filter);
    pw_core_disconnect(device.core);
    pw_context_destroy(context);
    pw_main_loop_destroy(device.loop);
    return 0;
}
