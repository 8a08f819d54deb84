#include "platform/linux/pipewire/Connection.h"

#include "platform/linux/pipewire/NodeWatch.h"
#include "platform/linux/pipewire/properties.h"

#include <pipewire/extensions/metadata.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>

namespace tallyvox {

namespace {

/// A waiting thread looks again after this time: a real-time thread cannot wake it.
constexpr std::chrono::nanoseconds kPoll = std::chrono::milliseconds(5);

void initialise() {
    static const bool done = [] {
        pw_init(nullptr, nullptr);
        // What matters reaches the operator as a status; the library's log stays for those who ask.
        if (std::getenv("PIPEWIRE_DEBUG") == nullptr)
            pw_log_set_level(SPA_LOG_LEVEL_NONE);
        return true;
    }();
    static_cast<void>(done);
}

bool isSink(std::string_view mediaClass) {
    return mediaClass == "Audio/Sink" || mediaClass == "Audio/Duplex";
}

Graph::Port portOf(const spa_dict& properties) {
    const auto field = [&](const char* key) {
        return static_cast<std::uint32_t>(number(properties, key).value_or(SPA_ID_INVALID));
    };
    return {.node = field(PW_KEY_NODE_ID),
            .index = field(PW_KEY_PORT_ID),
            .input = text(properties, PW_KEY_PORT_DIRECTION) == "in",
            .audio = text(properties, PW_KEY_FORMAT_DSP) == "32 bit float mono audio" &&
                     text(properties, PW_KEY_PORT_MONITOR) != "true"};
}

pw_context* makeContext(pw_thread_loop* loop, const char* configuration) {
    return pw_context_new(pw_thread_loop_get_loop(loop),
                          pw_properties_new(PW_KEY_CONFIG_NAME, configuration, PW_KEY_APP_ID,
                                            "com.orbelknoll.tallyvox", PW_KEY_APP_NAME, "Tallyvox",
                                            PW_KEY_APP_ICON_NAME, "com.orbelknoll.tallyvox",
                                            nullptr),
                          0);
}

}

struct Connection::Events {
    static void done(void* data, std::uint32_t id, int seq) {
        auto& connection = *static_cast<Connection*>(data);
        if (id != PW_ID_CORE || seq != connection.sync_)
            return;
        connection.sync_ = -1;
        if (std::exchange(connection.changed_, false))
            connection.changed();
        else
            connection.publish();
    }

    static void error(void* data, std::uint32_t id, int, int result, const char*) {
        auto& connection = *static_cast<Connection*>(data);
        // An object that vanished while a message to it was under way is no failure.
        if (id != PW_ID_CORE || result == -ENOENT)
            return;
        connection.broken_ = true;
        connection.wake();
    }

    static void global(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                       const spa_dict* properties) {
        auto& connection = *static_cast<Connection*>(data);
        if (properties == nullptr)
            return;
        const std::string_view kind = type;
        if (kind == PW_TYPE_INTERFACE_Node && isSink(text(*properties, PW_KEY_MEDIA_CLASS))) {
            Graph::Node& node = connection.graph_.nodes[id];
            node.serial =
                static_cast<std::uint64_t>(number(*properties, PW_KEY_OBJECT_SERIAL).value_or(id));
            node.mediaClass = text(*properties, PW_KEY_MEDIA_CLASS);
            describeNode(node, *properties);
            connection.watches_[id] = std::make_unique<NodeWatch>(
                connection.registry_, id, node, [&connection] { connection.changed(); });
        } else if (kind == PW_TYPE_INTERFACE_Port) {
            connection.graph_.ports[id] = portOf(*properties);
        } else if (kind == PW_TYPE_INTERFACE_Metadata && connection.settings_ == nullptr &&
                   text(*properties, PW_KEY_METADATA_NAME) == "settings") {
            connection.settings_ = static_cast<pw_proxy*>(pw_registry_bind(
                connection.registry_, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0));
            if (connection.settings_ != nullptr)
                pw_metadata_add_listener(reinterpret_cast<pw_metadata*>(connection.settings_),
                                         &connection.settingsHook_, &metadataEvents, &connection);
        } else {
            return;
        }
        connection.changed();
    }

    static void globalRemove(void* data, std::uint32_t id) {
        auto& connection = *static_cast<Connection*>(data);
        connection.watches_.erase(id);
        const bool known =
            connection.graph_.nodes.erase(id) + connection.graph_.ports.erase(id) > 0;
        if (!known)
            return;
        if (connection.published_)
            std::erase_if(*connection.published_,
                          [&](const Graph::Device& device) { return device.node == id; });
        connection.changed();
    }

    static int setting(void* data, std::uint32_t, const char* key, const char*, const char* value) {
        auto& connection = *static_cast<Connection*>(data);
        const std::string_view name = key != nullptr ? key : "";
        const auto rate = parseNumber(value != nullptr ? value : "").value_or(0);
        if (name == "clock.rate" && rate > 0)
            connection.graph_.clockRate = rate;
        else if (name == "clock.force-rate")
            connection.graph_.forcedRate = rate;
        else
            return 0;
        connection.changed();
        return 0;
    }

    static constexpr pw_core_events coreEvents{
        .version = PW_VERSION_CORE_EVENTS, .done = done, .error = error};
    static constexpr pw_registry_events registryEvents{
        .version = PW_VERSION_REGISTRY_EVENTS, .global = global, .global_remove = globalRemove};
    static constexpr pw_metadata_events metadataEvents{.version = PW_VERSION_METADATA_EVENTS,
                                                       .property = setting};
};

std::unique_ptr<Connection> Connection::open() {
    initialise();
    std::unique_ptr<Connection> connection(new Connection);
    return connection->connect() ? std::move(connection) : nullptr;
}

bool Connection::connect() {
    loop_.reset(pw_thread_loop_new("tallyvox", nullptr));
    if (!loop_)
        return false;
    for (const char* configuration : {"client-rt.conf", "client.conf"})
        if (!context_)
            context_.reset(makeContext(loop_.get(), configuration));
    if (!context_)
        return false;
    core_ = pw_context_connect(context_.get(), nullptr, 0);
    if (core_ == nullptr)
        return false;
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    if (registry_ == nullptr)
        return false;
    pw_core_add_listener(core_, &coreHook_, &Events::coreEvents, this);
    pw_registry_add_listener(registry_, &registryHook_, &Events::registryEvents, this);
    changed();
    return pw_thread_loop_start(loop_.get()) == 0;
}

Connection::~Connection() {
    if (!loop_)
        return;
    pw_thread_loop_stop(loop_.get());
    watches_.clear();
    if (settings_ != nullptr) {
        spa_hook_remove(&settingsHook_);
        pw_proxy_destroy(settings_);
    }
    if (registry_ != nullptr) {
        spa_hook_remove(&registryHook_);
        spa_hook_remove(&coreHook_);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    }
    if (core_ != nullptr)
        pw_core_disconnect(core_);
}

std::optional<std::vector<Graph::Device>> Connection::devices() const {
    return broken_ ? std::nullopt : published_;
}

bool Connection::wait(Deadline deadline, const std::function<bool()>& done) {
    while (!done()) {
        const std::chrono::nanoseconds left = deadline - std::chrono::steady_clock::now();
        if (broken_ || left <= left.zero())
            return false;
        timespec end{};
        pw_thread_loop_get_time(loop_.get(), &end, std::min(left, kPoll).count());
        pw_thread_loop_timed_wait_full(loop_.get(), &end);
    }
    return true;
}

/// Sees to it that what changed is published once the server has nothing more to tell.
void Connection::changed() {
    wake();
    if (sync_ >= 0)
        changed_ = true;
    else
        sync_ = pw_core_sync(core_, PW_ID_CORE, 0);
}

void Connection::publish() {
    published_ = graph_.devices();
    wake();
}

}
