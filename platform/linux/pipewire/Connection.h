#pragma once

#include "platform/linux/pipewire/Graph.h"

#include <pipewire/pipewire.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace tallyvox {

class NodeWatch;

/// One connection to a server from its making to its end, with a picture of the graph that the
/// connection's own thread keeps up to date. It is not repaired: where it broke, make another.
class Connection {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Held while anything is used that asks for it.
    class Lock {
    public:
        explicit Lock(Connection& connection) : loop_(connection.loop_.get()) {
            pw_thread_loop_lock(loop_);
        }
        ~Lock() { pw_thread_loop_unlock(loop_); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        pw_thread_loop* loop_;
    };

    /// Connects, or answers nothing where no server accepts. Returns before the server has told of
    /// its devices.
    static std::unique_ptr<Connection> open();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    /// Under the lock: the devices as they were when the server last had nothing new to tell;
    /// nothing as long as it has not told them once, and after the connection broke.
    std::optional<std::vector<Graph::Device>> devices() const;

    /// Under the lock: whether the server is gone.
    bool broken() const noexcept { return broken_; }

    /// Under the lock: all that the server has told.
    const Graph& graph() const noexcept { return graph_; }

    /// Under the lock.
    pw_core* core() const noexcept { return core_; }

    /// Under the lock: waits, with the lock released, until `done` holds, and answers whether it
    /// does; not beyond `deadline` nor the end of the connection. `done` is asked anew whenever the
    /// server told something or `wake` was called, and every few milliseconds.
    bool wait(Deadline deadline, const std::function<bool()>& done);

    /// Under the lock, as in all that the connection's own thread calls.
    void wake() noexcept { pw_thread_loop_signal(loop_.get(), false); }

private:
    struct Events;
    struct Close {
        void operator()(pw_thread_loop* loop) const noexcept { pw_thread_loop_destroy(loop); }
        void operator()(pw_context* context) const noexcept { pw_context_destroy(context); }
    };

    Connection() = default;
    bool connect();
    void changed();
    void publish();

    std::unique_ptr<pw_thread_loop, Close> loop_;
    std::unique_ptr<pw_context, Close> context_;
    pw_core* core_ = nullptr;
    pw_registry* registry_ = nullptr;
    pw_proxy* settings_ = nullptr;
    spa_hook coreHook_{};
    spa_hook registryHook_{};
    spa_hook settingsHook_{};
    std::map<std::uint32_t, std::unique_ptr<NodeWatch>> watches_;

    Graph graph_;
    std::optional<std::vector<Graph::Device>> published_;
    int sync_ = -1;        ///< the round trip under way, -1 for none
    bool changed_ = false; ///< since it began
    bool broken_ = false;
};

}
