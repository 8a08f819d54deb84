#include "platform/linux/pipewire/pipewireLayer.h"

#include "platform/linux/pipewire/Connection.h"
#include "platform/linux/pipewire/PipewireStream.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <utility>

namespace tallyvox {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// How long the first list waits for the server's answer: a program that lists once has no other
/// chance to get it.
constexpr auto kConnecting = 1s;
/// How long any other list waits for that of a new connection.
constexpr auto kListing = 40ms;
/// Between two attempts to reach a server that is away.
constexpr auto kPause = 100ms;

class PipewireLayer : public Layer {
public:
    std::string_view name() const override { return "pipewire"; }

    std::optional<std::vector<DeviceRecord>> devices() override {
        connect();
        const auto listed = targets();
        if (!listed)
            return {};
        std::vector<DeviceRecord> records;
        records.reserve(listed->size());
        for (const Graph::Device& target : *listed)
            records.push_back(played(target.record));
        return records;
    }

    std::optional<DeviceRecord> device(std::uint32_t id) override {
        const auto target = find(id);
        return target ? std::optional(played(target->record)) : std::nullopt;
    }

    std::int32_t open(std::uint32_t device, Hardware::IOCallback callback,
                      std::unique_ptr<Stream>& stream) override {
        const auto target = find(device);
        if (!target)
            return kAudioHardwareBadDeviceError;
        auto made =
            std::make_unique<PipewireStream>(connection_, target->record, std::move(callback));
        std::erase_if(rates_, [](const auto& rate) { return rate.second.expired(); });
        rates_.emplace_back(device, made->graphRate());
        stream = std::move(made);
        return 0;
    }

private:
    /// Connects where there is no connection, unless that was tried a moment ago.
    void connect() {
        if ((connection_ && !broken()) || Clock::now() < attempted_ + kPause)
            return;
        const bool first = attempted_ == Clock::time_point{};
        connection_ = Connection::open();
        attempted_ = Clock::now();
        if (!connection_)
            return;
        const Connection::Lock lock(*connection_);
        connection_->wait(attempted_ + (first ? kConnecting : kListing),
                          [this] { return connection_->devices().has_value(); });
    }

    bool broken() const {
        const Connection::Lock lock(*connection_);
        return connection_->broken();
    }

    std::optional<std::vector<Graph::Device>> targets() const {
        if (!connection_)
            return {};
        const Connection::Lock lock(*connection_);
        return connection_->devices();
    }

    std::optional<Graph::Device> find(std::uint32_t id) const {
        auto listed = targets();
        if (!listed)
            return {};
        const auto found = std::ranges::find(
            *listed, id, [](const Graph::Device& device) { return device.record.id; });
        return found != listed->end() ? std::optional(std::move(*found)) : std::nullopt;
    }

    /// `record` with the rate at which its graph runs now, where a stream plays on it.
    DeviceRecord played(DeviceRecord record) const {
        for (const auto& [device, rate] : rates_)
            if (const auto current = rate.lock(); current && device == record.id && *current != 0)
                record.rate = *current;
        return record;
    }

    std::shared_ptr<Connection> connection_;
    Clock::time_point attempted_{}; ///< when a server was last looked for
    /// The graph's rate as each stream saw it last, by device.
    std::vector<std::pair<std::uint32_t, std::weak_ptr<const std::atomic<std::uint32_t>>>> rates_;
};

}

std::unique_ptr<Layer> makePipewireLayer() { return std::make_unique<PipewireLayer>(); }

}
