#include "platform/linux/alsa/AlsaLayer.h"

#include "platform/linux/alsa/AlsaCards.h"
#include "platform/linux/alsa/AlsaStream.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <utility>

namespace tallyvox {
namespace {

using Clock = std::chrono::steady_clock;

/// For so long a list serves the questions about its devices.
constexpr std::chrono::milliseconds kFresh{20};

// NOLINTNEXTLINE(cert-dcl50-cpp): what ALSA calls is variadic.
void ignoreMessage(const char*, int, const char*, int, const char*, ...) {}

/// A stream that says whether it is still there.
class CountedStream : public Stream {
public:
    CountedStream(std::unique_ptr<Stream> stream, std::shared_ptr<int> count)
        : stream_(std::move(stream)), count_(std::move(count)) {}

    std::int32_t start() override { return stream_->start(); }
    void stop() override { stream_->stop(); }
    std::uint64_t xruns() const noexcept override { return stream_->xruns(); }

private:
    const std::unique_ptr<Stream> stream_;
    const std::shared_ptr<int> count_;
};

class AlsaLayer : public Layer {
public:
    AlsaLayer() { snd_lib_error_set_handler(ignoreMessage); }

    std::string_view name() const override { return "alsa"; }

    std::optional<std::vector<DeviceRecord>> devices() override {
        const bool playing = streams_.use_count() > 1;
        std::map<std::uint32_t, Known> now;
        std::vector<DeviceRecord> records;
        for (auto& device : alsaDevices()) {
            const auto before = known_.find(device.id);
            auto shape = before != known_.end() && playing ? std::optional(before->second.shape)
                                                           : probe(device.pcm);
            // Another program has it: what it offered last still holds.
            if (!shape && before != known_.end())
                shape = before->second.shape;
            if (!shape)
                continue;
            records.push_back({device.id, device.name,
                               std::vector<std::uint32_t>(shape->channels, 1),
                               static_cast<double>(shape->rate)});
            now[device.id] = {device.pcm, *shape};
        }
        known_ = std::move(now);
        last_ = records;
        lastTime_ = Clock::now();
        return records;
    }

    std::optional<DeviceRecord> device(std::uint32_t id) override {
        if (id >> 30U != static_cast<std::uint32_t>(LayerTag::alsa))
            return std::nullopt;
        // Whoever asks for a list goes on to ask for each device, property by property.
        if (Clock::now() - lastTime_ > kFresh)
            devices();
        const auto record =
            std::find_if(last_.begin(), last_.end(), [&](const auto& one) { return one.id == id; });
        return record != last_.end() ? std::optional(*record) : std::nullopt;
    }

    std::int32_t open(std::uint32_t device, Hardware::IOCallback callback,
                      std::unique_ptr<Stream>& stream) override {
        if (known_.find(device) == known_.end())
            devices();
        const auto known = known_.find(device);
        if (known == known_.end())
            return kAudioHardwareBadDeviceError;
        std::unique_ptr<Stream> opened;
        const auto status =
            openAlsaStream(known->second.pcm, known->second.shape, std::move(callback), opened);
        if (status == 0)
            stream = std::make_unique<CountedStream>(std::move(opened), streams_);
        return status;
    }

private:
    struct Known {
        std::string pcm;
        AlsaShape shape;
    };

    static std::optional<AlsaShape> probe(const std::string& name) {
        std::unique_ptr<AlsaPcm> pcm;
        return AlsaPcm::open(name, pcm) == 0 ? pcm->shape() : std::nullopt;
    }

    std::map<std::uint32_t, Known> known_;
    std::vector<DeviceRecord> last_;
    Clock::time_point lastTime_;
    std::shared_ptr<int> streams_ = std::make_shared<int>(); ///< shared with each stream
};

}

std::unique_ptr<Layer> makeAlsaLayer() { return std::make_unique<AlsaLayer>(); }

}
