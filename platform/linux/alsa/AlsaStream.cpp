#include "platform/linux/alsa/AlsaStream.h"

#include "base/checked.h"
#include "engine/AudioBufferList.h"
#include "platform/common/RealtimeThread.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace tallyvox {
namespace {

class AlsaStream final : public Stream {
public:
    AlsaStream(std::unique_ptr<AlsaPcm> pcm, std::size_t channels, Hardware::IOCallback callback)
        : pcm_(std::move(pcm)),
          callback_(std::move(callback)),
          list_(std::vector<std::uint32_t>(channels, 1)),
          samples_(channels * pcm_->period()),
          sampleSize_(sampleSize(pcm_->format())),
          hardware_(samples_.size() * sampleSize_),
          places_(pcm_->interleaved() ? 1 : channels) {
        for (std::size_t i = 0; i < channels; ++i) {
            auto& buffer = list_.buffers()[i];
            buffer.mData = &samples_[i * pcm_->period()];
            buffer.mDataByteSize = checkedCast<std::uint32_t>(pcm_->period() * sizeof(float));
        }
    }

    ~AlsaStream() override { stop(); }

    std::int32_t start() override {
        stop();
        const auto status = pcm_->prepare();
        if (status < 0)
            return status;
        thread_.start([this] { run(); });
        return 0;
    }

    void stop() override {
        if (thread_.stop())
            pcm_->drop();
    }

    std::uint64_t xruns() const noexcept override { return xruns_.load(); }

private:
    void run() {
        while (!thread_.stopping()) {
            callback_(list_.get());
            convert();
            if (!deliver())
                return;
        }
    }

    /// Real-time: brings the period into the hardware's form.
    void convert() noexcept {
        const auto channels = list_.buffers().size();
        const auto frames = pcm_->period();
        const bool interleaved = pcm_->interleaved();
        for (std::size_t i = 0; i < channels; ++i)
            convertSamples(&samples_[i * frames], frames, pcm_->format(),
                           &hardware_[i * sampleSize_ * (interleaved ? 1 : frames)],
                           sampleSize_ * (interleaved ? channels : 1));
    }

    /// Hands the period over; false where the hardware has gone.
    bool deliver() {
        const auto frames = pcm_->period();
        for (std::size_t done = 0; done < frames && !thread_.stopping();) {
            locate(done);
            const auto written = pcm_->write(places_, frames - done);
            if (written > static_cast<std::int64_t>(frames - done))
                return false;
            if (written > 0)
                done += static_cast<std::size_t>(written);
            else if (!recover(written))
                return false;
        }
        return true;
    }

    /// Points at frame `frame` of the period in the hardware's form.
    void locate(std::size_t frame) noexcept {
        const auto frames = pcm_->period();
        const auto width = sampleSize_ * (pcm_->interleaved() ? list_.buffers().size() : 1);
        for (std::size_t i = 0; i < places_.size(); ++i)
            places_[i] = &hardware_[(i * frames + frame) * width];
    }

    /// Does what `status` asks for; false where nothing helps.
    bool recover(std::int64_t status) {
        if (status == 0 || status == -EAGAIN) {
            const auto waited = pcm_->wait();
            return waited >= 0 || recoverStopped(waited);
        }
        return recoverStopped(status);
    }

    bool recoverStopped(std::int64_t status) {
        if (status == -EINTR)
            return true;
        if (status == -EPIPE) {
            ++xruns_;
            return pcm_->prepare() >= 0;
        }
        if (status != -ESTRPIPE)
            return false;
        while (!thread_.stopping()) {
            const auto resumed = pcm_->resume();
            if (resumed != -EAGAIN)
                return resumed >= 0 || pcm_->prepare() >= 0;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return true;
    }

    const std::unique_ptr<AlsaPcm> pcm_;
    Hardware::IOCallback callback_;
    OwnedBufferList list_;
    std::vector<float> samples_; ///< channel after channel
    const std::size_t sampleSize_;
    std::vector<std::byte> hardware_; ///< the same in the hardware's form
    std::vector<void*> places_;       ///< what is handed over next
    std::atomic<std::uint64_t> xruns_ = 0;
    RealtimeThread thread_;
};

}

std::int32_t openAlsaStream(const std::string& name, AlsaShape shape, Hardware::IOCallback callback,
                            std::unique_ptr<Stream>& stream) {
    std::unique_ptr<AlsaPcm> pcm;
    auto status = AlsaPcm::open(name, pcm);
    if (status < 0)
        return status;
    status = pcm->configure(shape);
    if (status < 0)
        return status;
    stream = std::make_unique<AlsaStream>(std::move(pcm), shape.channels, std::move(callback));
    return 0;
}

}
