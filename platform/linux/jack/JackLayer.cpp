#include "platform/linux/jack/JackLayer.h"

#include "platform/linux/jack/JackPlayback.h"
#include "platform/linux/jack/Worker.h"

#include <algorithm>
#include <utility>

namespace tallyvox {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kListing{40};
/// For the first list, which a program that lists once has no other chance to get.
constexpr milliseconds kConnecting{1500};
/// Between two attempts to reach a server that is away.
constexpr milliseconds kPause{100};
/// A server that says nothing for so long does not answer; until then its last list stands.
constexpr milliseconds kSilence{2000};
/// For so long a list serves the questions about its devices.
constexpr milliseconds kFresh{20};
/// For a step of a start: the whole of it may take seconds on a busy machine.
constexpr milliseconds kStarting{1500};
/// For the first cycles of a server that otherwise answers.
constexpr milliseconds kRunning{1200};
/// Together with the former less than two seconds, for a start that fails ends with a stop.
constexpr milliseconds kStopping{500};
constexpr milliseconds kClosing{500};

class JackStream : public Stream {
public:
    JackStream(std::shared_ptr<Worker> worker, std::shared_ptr<JackConnection> connection,
               std::shared_ptr<JackPlayback> playback)
        : worker_(std::move(worker)),
          connection_(std::move(connection)),
          playback_(std::move(playback)) {}

    ~JackStream() override {
        playback_->disarm();
        playback_->release();
        const auto close = [playback = playback_] { playback->close(); };
        if (!worker_->run(close, kClosing))
            worker_->post(close);
    }

    std::int32_t open() {
        return ask([playback = playback_, connection = connection_] {
            return playback->open(*connection);
        });
    }

    std::int32_t start() override {
        const auto status = ask([playback = playback_, connection = connection_] {
            return playback->start(*connection, kRunning);
        });
        if (status == 0) {
            playback_->arm();
            worker_->post([playback = playback_] { playback->label(); });
        }
        return status;
    }

    void stop() override {
        playback_->disarm();
        const auto stop = [playback = playback_] { playback->stop(); };
        if (!worker_->run(stop, kStopping))
            worker_->post(stop);
    }

    std::uint64_t xruns() const noexcept override { return playback_->xruns(); }

private:
    /// The status that `job` finds, or that nothing is running where the server hangs.
    template<typename Job>
    std::int32_t ask(Job job) {
        const auto status = std::make_shared<std::int32_t>();
        if (!worker_->run([status, job = std::move(job)] { *status = job(); }, kStarting))
            return kAudioHardwareNotRunningError;
        return *status;
    }

    const std::shared_ptr<Worker> worker_;
    const std::shared_ptr<JackConnection> connection_;
    const std::shared_ptr<JackPlayback> playback_;
};

class JackLayer : public Layer {
public:
    explicit JackLayer(JackServers servers)
        : worker_(std::make_shared<Worker>()),
          connection_(std::make_shared<JackConnection>(servers)) {
        // So that it runs while the other layers are asked for their first lists.
        worker_->post([connection = connection_] { connection->client(); });
    }

    ~JackLayer() override {
        // The worker closes the clients: the last owner of the connection is its last job.
        worker_->post([connection = std::move(connection_)] {});
    }

    std::string_view name() const override { return "jack"; }

    std::optional<std::vector<DeviceRecord>> devices() override {
        const bool first = lastTime_ == Clock::time_point{};
        if (!first && !last_ && Clock::now() < lastTime_ + kPause)
            return std::nullopt;
        const auto answer = std::make_shared<std::optional<std::vector<DeviceRecord>>>();
        const auto patience = first ? kConnecting : kListing;
        if (worker_->run([answer, connection = connection_] { *answer = records(*connection); },
                         patience, patience))
            last_ = std::move(*answer);
        else if (worker_->silence() > kSilence)
            last_.reset();
        lastTime_ = Clock::now();
        return last_;
    }

    std::optional<DeviceRecord> device(std::uint32_t id) override {
        // Whoever asks for a list goes on to ask for each device, property by property.
        if (id >> 30U != static_cast<std::uint32_t>(LayerTag::jack))
            return std::nullopt;
        if (Clock::now() - lastTime_ > kFresh)
            devices();
        if (!last_)
            return std::nullopt;
        const auto record = std::find_if(last_->begin(), last_->end(),
                                         [&](const auto& one) { return one.id == id; });
        return record != last_->end() ? std::optional(*record) : std::nullopt;
    }

    std::int32_t open(std::uint32_t device, Hardware::IOCallback callback,
                      std::unique_ptr<Stream>& stream) override {
        if (!devices())
            return kAudioHardwareNotRunningError;
        const auto record = this->device(device);
        if (!record)
            return kAudioHardwareBadDeviceError;
        auto opened = std::make_unique<JackStream>(
            worker_, connection_,
            std::make_shared<JackPlayback>(device, record->buffers.size(), record->rate,
                                           std::move(callback)));
        const auto status = opened->open();
        if (status == 0)
            stream = std::move(opened);
        return status;
    }

private:
    static std::optional<std::vector<DeviceRecord>> records(JackConnection& connection) {
        const auto* client = connection.client();
        if (client == nullptr)
            return std::nullopt;
        const auto rate = client->rate();
        std::vector<DeviceRecord> records;
        for (auto& device : client->devices())
            records.push_back({deviceId(LayerTag::jack, device.uuid), std::move(device.name),
                               std::vector<std::uint32_t>(device.ports.size(), 1), rate});
        return records;
    }

    const std::shared_ptr<Worker> worker_;
    std::shared_ptr<JackConnection> connection_;
    std::optional<std::vector<DeviceRecord>> last_;
    Clock::time_point lastTime_; ///< when the server was last asked
};

}

std::unique_ptr<Layer> makeJackLayer(JackServers servers) {
    return std::make_unique<JackLayer>(servers);
}

}
