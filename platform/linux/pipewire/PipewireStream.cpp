#include "platform/linux/pipewire/PipewireStream.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace tallyvox {

namespace {

using namespace std::chrono_literals;

/// How long a start waits for the server's next step.
constexpr auto kPatience = 1200ms;

/// Silent cycles before the first sound.
constexpr std::int64_t kSettlingCycles = 1;

/// The same where the graph had to be rebuilt for the stream, to take on its rate: listeners beside
/// it are linked anew then, and come back one after the other.
constexpr std::int64_t kRebuiltCycles = 3;

/// Releases what it was given at the end of a scope.
struct Properties {
    explicit Properties(pw_properties* properties) : held(properties) {}
    Properties(const Properties&) = delete;
    Properties& operator=(const Properties&) = delete;
    ~Properties() { pw_properties_free(held); }
    pw_properties* held;
};

}

struct PipewireStream::Events {
    static void fail(PipewireStream& stream) {
        stream.failed_ = true;
        stream.connection_->wake();
    }

    static void state(void* data, pw_filter_state, pw_filter_state now, const char*) {
        auto& stream = *static_cast<PipewireStream*>(data);
        if (now == PW_FILTER_STATE_ERROR)
            fail(stream);
        stream.connection_->wake();
    }

    /// Real-time: one cycle of the graph.
    static void process(void* data, spa_io_position* position) noexcept {
        if (position != nullptr)
            static_cast<PipewireStream*>(data)->cycle_.run(*position);
    }

    static void linkError(void* data, int, int, const char*) {
        fail(*static_cast<Link*>(data)->stream);
    }

    static void linkRemoved(void* data) { fail(*static_cast<Link*>(data)->stream); }

    static void linkInfo(void* data, const pw_link_info* info) {
        auto& link = *static_cast<Link*>(data);
        if ((info->change_mask & PW_LINK_CHANGE_MASK_STATE) != 0) {
            // A link that does not get a step further is being made once more.
            link.stream->rebuilt_ = link.stream->rebuilt_ || info->state <= link.state;
            link.state = info->state;
        }
        ++link.stream->progress_;
        link.stream->changed_ = link.stream->cycle_.steady();
        if (info->state == PW_LINK_STATE_ERROR)
            fail(*link.stream);
        link.stream->connection_->wake();
    }

    static constexpr pw_filter_events filterEvents{
        .version = PW_VERSION_FILTER_EVENTS, .state_changed = state, .process = process};
    static constexpr pw_proxy_events proxyEvents{
        .version = PW_VERSION_PROXY_EVENTS, .removed = linkRemoved, .error = linkError};
    static constexpr pw_link_events linkEvents{.version = PW_VERSION_LINK_EVENTS, .info = linkInfo};
};

PipewireStream::PipewireStream(std::shared_ptr<Connection> connection, const DeviceRecord& device,
                               Hardware::IOCallback callback)
    : connection_(std::move(connection)),
      device_(device),
      cycle_(std::ssize(device.buffers), device.rate, std::move(callback)) {}

std::int32_t PipewireStream::start() {
    stop();
    const Connection::Lock lock(*connection_);
    const std::int32_t status = play();
    if (status != 0)
        release();
    return status;
}

void PipewireStream::stop() {
    const Connection::Lock lock(*connection_);
    release();
}

std::int32_t PipewireStream::play() {
    failed_ = false;
    changed_ = 0;
    rebuilt_ = false;
    const auto devices = connection_->devices();
    if (!devices)
        return kAudioHardwareNotRunningError;
    const auto target = std::ranges::find(
        *devices, device_.id, [](const Graph::Device& device) { return device.record.id; });
    if (target == devices->end() || target->record.buffers != device_.buffers)
        return kAudioHardwareBadDeviceError;
    if (!makeFilter())
        return kAudioHardwareUnspecifiedError;

    std::vector<std::uint32_t> outputs;
    const bool ready = await([&] {
        const std::size_t before = outputs.size();
        outputs = connection_->graph().audioPorts(pw_filter_get_node_id(filter_), false);
        progress_ += outputs.size() != before ? 1 : 0;
        return outputs.size() == target->ports.size();
    });
    if (!ready)
        return kAudioHardwareNotRunningError;
    if (!makeLinks(*target, outputs))
        return kAudioHardwareUnspecifiedError;
    pw_filter_set_active(filter_, true);
    if (!await([this] { return settled(); }))
        return kAudioHardwareNotRunningError;
    cycle_.arm();
    return 0;
}

/// Waits as long as the server goes on building, for many channels take it a while.
bool PipewireStream::await(const std::function<bool()>& done) {
    std::int64_t before = -1;
    while (!failed_ && progress_ != std::exchange(before, progress_))
        if (connection_->wait(std::chrono::steady_clock::now() + kPatience,
                              [&] { return failed_ || done(); }))
            return !failed_;
    return false;
}

bool PipewireStream::makeFilter() {
    const auto rate = std::to_string(static_cast<std::int64_t>(device_.rate));
    filter_ = pw_filter_new(
        connection_->core(), "Announcement",
        pw_properties_new(PW_KEY_NODE_NAME, "tallyvox", PW_KEY_NODE_DESCRIPTION, "Tallyvox",
                          PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback",
                          PW_KEY_MEDIA_ROLE, "Test", PW_KEY_NODE_FORCE_RATE, rate.c_str(),
                          PW_KEY_NODE_AUTOCONNECT, "false", PW_KEY_NODE_DONT_RECONNECT, "true",
                          "node.dont-fallback", "true", PW_KEY_STREAM_DONT_REMIX, "true", nullptr));
    if (filter_ == nullptr)
        return false;
    pw_filter_add_listener(filter_, &filterHook_, &Events::filterEvents, this);
    for (std::int64_t channel = 0; channel < std::ssize(device_.buffers); ++channel) {
        const std::string name = "out_" + std::to_string(channel + 1);
        void* const port = pw_filter_add_port(
            filter_, PW_DIRECTION_OUTPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void*),
            pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                              name.c_str(), nullptr),
            nullptr, 0);
        if (port == nullptr)
            return false;
        cycle_.setPort(channel, port);
    }
    const auto flags =
        static_cast<pw_filter_flags>(PW_FILTER_FLAG_INACTIVE | PW_FILTER_FLAG_RT_PROCESS);
    return pw_filter_connect(filter_, flags, nullptr, 0) == 0;
}

bool PipewireStream::makeLinks(const Graph::Device& target,
                               const std::vector<std::uint32_t>& outputs) {
    links_ = std::vector<Link>(outputs.size());
    for (std::size_t channel = 0; channel < outputs.size(); ++channel) {
        const Properties properties(pw_properties_new(nullptr, nullptr));
        const auto set = [&](const char* key, std::uint32_t id) {
            pw_properties_set(properties.held, key, std::to_string(id).c_str());
        };
        set(PW_KEY_LINK_OUTPUT_NODE, pw_filter_get_node_id(filter_));
        set(PW_KEY_LINK_OUTPUT_PORT, outputs[channel]);
        set(PW_KEY_LINK_INPUT_NODE, target.node);
        set(PW_KEY_LINK_INPUT_PORT, target.ports[channel]);
        Link& link = links_[channel];
        link.stream = this;
        link.proxy = static_cast<pw_proxy*>(
            pw_core_create_object(connection_->core(), "link-factory", PW_TYPE_INTERFACE_Link,
                                  PW_VERSION_LINK, &properties.held->dict, 0));
        if (link.proxy == nullptr)
            return false;
        pw_proxy_add_listener(link.proxy, &link.proxyHook, &Events::proxyEvents, &link);
        pw_link_add_listener(reinterpret_cast<pw_link*>(link.proxy), &link.linkHook,
                             &Events::linkEvents, &link);
    }
    return true;
}

/// Only when the graph has run through all links since the last of them became active does sound
/// reach all channels at once.
bool PipewireStream::settled() {
    changed_ = std::min(changed_, cycle_.steady());
    return std::ranges::all_of(
               links_, [](const Link& link) { return link.state == PW_LINK_STATE_ACTIVE; }) &&
           cycle_.steady() >= changed_ + (rebuilt_ ? kRebuiltCycles : kSettlingCycles);
}

void PipewireStream::release() {
    for (Link& link : links_)
        if (link.proxy != nullptr) {
            spa_hook_remove(&link.proxyHook);
            spa_hook_remove(&link.linkHook);
            pw_proxy_destroy(link.proxy);
        }
    links_.clear();
    if (filter_ != nullptr)
        // Waits for the call under way.
        pw_filter_destroy(std::exchange(filter_, nullptr));
    cycle_.reset();
}

}
