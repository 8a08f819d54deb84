#include "audio/AudioOutput.h"
#include "audio/xruns.h"
#include "engine/AudioFile.h"
#include "tests/soak/Ear.h"
#include "tests/soak/announcements.h"
#include "tests/soak/trials.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/VoicesFolder.h"

#include <cstdio>
#include <thread>

namespace tallyvox {
namespace {

constexpr std::int64_t kChannels = 128;

/// Takes a processor as long as it lives.
std::jthread busy() {
    return std::jthread([](const std::stop_token& stopping) {
        for (volatile double value = 1; !stopping.stop_requested();)
            value = value * 1.0000001;
    });
}

/// Holds some cycles of a device up.
class SlowHardware : public Hardware {
public:
    explicit SlowHardware(Hardware& hardware) : hardware_(hardware) {}

    std::int32_t propertyDataSize(std::uint32_t object, const AudioObjectPropertyAddress& address,
                                  std::uint32_t& bytes) override {
        return hardware_.propertyDataSize(object, address, bytes);
    }
    std::int32_t propertyData(std::uint32_t object, const AudioObjectPropertyAddress& address,
                              std::uint32_t& bytes, void* data) override {
        return hardware_.propertyData(object, address, bytes, data);
    }
    std::string takeString(const void* reference) override {
        return hardware_.takeString(reference);
    }
    std::int32_t createIOProc(std::uint32_t device, IOCallback callback, IOProcId& proc) override {
        auto slow = [callback = std::move(callback), cycle = 0](AudioBufferList* list) mutable {
            if (++cycle % 50 == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(40));
            callback(list);
        };
        return hardware_.createIOProc(device, std::move(slow), proc);
    }
    std::int32_t startDevice(std::uint32_t device, IOProcId proc) override {
        return hardware_.startDevice(device, proc);
    }
    std::int32_t stopDevice(std::uint32_t device, IOProcId proc) override {
        return hardware_.stopDevice(device, proc);
    }
    std::int32_t destroyIOProc(std::uint32_t device, IOProcId proc) override {
        return hardware_.destroyIOProc(device, proc);
    }

private:
    Hardware& hardware_;
};

void compare(const std::filesystem::path& file, Ear& ear) {
    std::vector<std::vector<float>> channels;
    AudioFile(file).read(channels);
    std::vector<const float*> inputs;
    inputs.reserve(channels.size());
    for (const auto& channel : channels)
        inputs.push_back(channel.data());
    ear.hear(inputs.data(), static_cast<std::int64_t>(channels.front().size()));
}

}

bool overload(std::int64_t seconds) {
    VoicesFolder voices;
    voices.fillUpTo(kChannels);
    const TemporaryFolder folder;
    const auto file = folder.path() / "heard.wav";
    const auto real = layerOf("virtual:128@48000", file.string());
    SlowHardware hardware(*real);
    const auto device = await(hardware, kChannels);
    std::vector<std::jthread> load;
    for (unsigned core = 0; core < std::thread::hardware_concurrency(); ++core)
        load.push_back(busy());
    AudioOutput audio(hardware);
    audio.start(device, std::vector<bool>(kChannels, true), kLevel, kGap, true);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const auto lost = xruns(device.id, hardware).value_or(0);
    audio.stop();
    load.clear();

    Ear ear(expectedRound(kChannels, true), kChannels);
    compare(file, ear);
    const bool held = ear.wrong() == 0 && ear.late() == 0 && ear.right() > 0 && lost > 0;
    std::printf("overload: %lld frames right, %lld wrong, %llu late cycles counted: %s\n",
                static_cast<long long>(ear.right()), static_cast<long long>(ear.wrong()),
                static_cast<unsigned long long>(lost), held ? "held" : "BROKEN");
    return held;
}

}
