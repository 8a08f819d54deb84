#pragma once

#include "platform/linux/pipewire/Connection.h"
#include "platform/linux/pipewire/IoCycle.h"

#include <pipewire/pipewire.h>

#include <functional>
#include <memory>
#include <vector>

namespace tallyvox {

/// A stream to one sink: a filter with a port for each channel, linked port by port, so that
/// nothing on the way mixes, resamples or reroutes.
class PipewireStream final : public Stream {
public:
    PipewireStream(std::shared_ptr<Connection> connection, const DeviceRecord& device,
                   Hardware::IOCallback callback);
    ~PipewireStream() override { stop(); }

    /// Returns when every channel is connected and the callback is called; gives up when the server
    /// is silent for about a second.
    std::int32_t start() override;
    void stop() override;
    std::uint64_t xruns() const noexcept override { return cycle_.xruns(); }

    /// The graph's rate in Hz as long as the stream is called, 0 otherwise; any thread.
    std::shared_ptr<const std::atomic<std::uint32_t>> graphRate() const noexcept {
        return cycle_.graphRate();
    }

private:
    struct Events;
    struct Link {
        PipewireStream* stream = nullptr;
        pw_proxy* proxy = nullptr;
        spa_hook proxyHook{};
        spa_hook linkHook{};
        pw_link_state state = PW_LINK_STATE_UNLINKED;
    };

    std::int32_t play();
    bool await(const std::function<bool()>& done);
    bool makeFilter();
    bool makeLinks(const Graph::Device& target, const std::vector<std::uint32_t>& outputs);
    bool settled();
    void release();

    std::shared_ptr<Connection> connection_;
    DeviceRecord device_;
    IoCycle cycle_;
    pw_filter* filter_ = nullptr;
    spa_hook filterHook_{};
    std::vector<Link> links_;
    bool failed_ = false;
    std::int64_t progress_ = 0; ///< steps that the server has taken
    bool rebuilt_ = false;      ///< since the links were made
    std::int64_t changed_ = 0;  ///< how many cycles were steady when a link last changed
};

}
