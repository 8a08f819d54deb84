#include "platform/virtual/VirtualStream.h"

#include "base/Error.h"
#include "base/checked.h"
#include "engine/WaveWriter.h"
#include "platform/common/RealtimeThread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iostream>
#include <thread>
#include <utility>

namespace tallyvox {

namespace {

/// Frames of one I/O cycle.
constexpr std::int64_t kPeriod = 512;

/// How long a stop may have to wait for a thread that sleeps until its next cycle.
constexpr std::chrono::milliseconds kNap{20};

class VirtualStream final : public Stream {
public:
    VirtualStream(VirtualDevice device, Hardware::IOCallback callback, std::filesystem::path record)
        : device_(device),
          callback_(std::move(callback)),
          record_(std::move(record)),
          list_({static_cast<std::uint32_t>(device.channels)}),
          samples_(static_cast<std::size_t>(kPeriod * device.channels)) {
        AudioBuffer& buffer = list_.buffers()[0];
        buffer.mDataByteSize = static_cast<std::uint32_t>(samples_.size() * sizeof(float));
        buffer.mData = samples_.data();
    }

    ~VirtualStream() override { stop(); }

    std::int32_t start() override {
        stop();
        if (!record_.empty()) {
            try {
                file_ = std::make_unique<WaveWriter>(record_, device_.channels, device_.rate);
            } catch (const Error& error) {
                std::cerr << error.what() << std::endl;
                return kAudioHardwareUnspecifiedError;
            }
        }
        thread_.start([this] { run(); });
        return 0;
    }

    void stop() override {
        if (!thread_.stop())
            return;
        keep([](WaveWriter& file) { file.close(); });
        file_.reset();
    }

    std::uint64_t xruns() const noexcept override { return xruns_; }

private:
    using Clock = std::chrono::steady_clock;

    void run() {
        const std::chrono::duration<double> period(static_cast<double>(kPeriod) / device_.rate);
        auto first = Clock::now();
        for (std::int64_t cycle = 0; !thread_.stopping(); ++cycle) {
            const auto due =
                first + std::chrono::duration_cast<Clock::duration>(period * double(cycle));
            if (Clock::now() > due + std::chrono::duration_cast<Clock::duration>(period)) {
                // What is late stays late: the device goes on from now.
                ++xruns_;
                first += Clock::now() - due;
            } else {
                sleepUntil(due);
            }
            if (thread_.stopping())
                return;
            callback_(list_.get());
            keep([this](WaveWriter& file) { file.write(samples_); });
        }
    }

    /// Sleeps until `due`, or until the thread has to stop.
    void sleepUntil(Clock::time_point due) const {
        while (Clock::now() < due && !thread_.stopping())
            std::this_thread::sleep_until(std::min(due, Clock::now() + kNap));
    }

    /// Lets `action` work on the recorded file, and gives the file up when that fails.
    template<class Action>
    void keep(Action action) {
        if (!file_)
            return;
        try {
            action(*file_);
        } catch (const Error& error) {
            std::cerr << error.what() << std::endl;
            file_.reset();
        }
    }

    VirtualDevice device_;
    Hardware::IOCallback callback_;
    std::filesystem::path record_;
    OwnedBufferList list_;
    std::vector<float> samples_;
    std::unique_ptr<WaveWriter> file_;
    std::atomic<std::uint64_t> xruns_ = 0;
    RealtimeThread thread_;
};

}

std::unique_ptr<Stream> makeVirtualStream(VirtualDevice device, Hardware::IOCallback callback,
                                          std::filesystem::path record) {
    return std::make_unique<VirtualStream>(device, std::move(callback), std::move(record));
}

}
