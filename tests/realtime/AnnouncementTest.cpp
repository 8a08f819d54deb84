#include "audio/AudioOutput.h"
#include "audio/devices.h"
#include "platform/linux/makeHardware.h"
#include "tests/realtime/GuardedHardware.h"
#include "tests/support/JackServer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/VoicesFolder.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>

namespace tallyvox {
namespace {

struct Announcement {
    std::int64_t channels;
    bool sequential;
};

/// Announces on the output of `channels` channels that `hardware` lists, each cycle inside a
/// real-time section, through many rounds of the voices.
void announce(Hardware& hardware, const Announcement& announcement) {
    SCOPED_TRACE(std::to_string(announcement.channels) +
                 (announcement.sequential ? " channels in turn" : " channels together"));
    GuardedHardware guarded(hardware);
    std::optional<OutputDevice> output;
    ASSERT_TRUE(eventually([&] {
        for (const auto& device : devices(guarded))
            if (device.channels == announcement.channels)
                output = device;
        return output.has_value();
    }));
    AudioOutput audio(guarded);
    const auto before = GuardedHardware::frames();
    audio.start(*output, std::vector<bool>(static_cast<std::size_t>(output->channels), true), -24,
                0, announcement.sequential);
    // Without a gap a cycle has 136 frames at most, and a round 128 cycles.
    EXPECT_TRUE(eventually(
        [&] { return GuardedHardware::frames() > before + std::int64_t{2} * 128 * 136; }));
    audio.stop();
}

void announceAll(std::string_view choice) {
    VoicesFolder voices;
    voices.fillUpTo(128);
    std::ostringstream complaints;
    const auto hardware = makeHardware(choice, {}, complaints);
    ASSERT_EQ(complaints.str(), "");
    for (const std::int64_t channels : {2, 64, 128})
        for (const bool sequential : {false, true})
            announce(*hardware, {channels, sequential});
}

TEST(Announcement, KeepsToRealTimeOnVirtualDevices) {
    announceAll("virtual:2@48000,64@48000,128@48000");
}

TEST(Announcement, KeepsToRealTimeOnJack) {
    if (!JackServer::available())
        GTEST_SKIP() << "jackd is not installed";
    JackServer server({.synchronous = false});
    const JackOutput few("few", 2);
    const JackOutput many("many", 64);
    const JackOutput most("most", 128);
    announceAll("jack");
}

TEST(Announcement, KeepsToRealTimeOnPipeWire) {
    if (!PipewireServer::available())
        GTEST_SKIP() << "pipewire is not installed";
    const PipewireServer server({{"Few", 2, 48000}});
    const PipewireOutput many("Many", 64, 48000);
    const PipewireOutput most("Most", 128, 48000);
    announceAll("pipewire");
}

TEST(PlantedFault, AnAllocationInTheIOCallbackIsCaught) {
    EXPECT_EXIT(
        {
            std::ostringstream complaints;
            const auto hardware = makeHardware("virtual:2@96000", {}, complaints);
            GuardedHardware guarded(*hardware);
            std::vector<std::unique_ptr<int>> planted;
            Hardware::IOProcId proc = nullptr;
            const auto device = devices(guarded).front().id;
            guarded.createIOProc(
                device, [&](AudioBufferList*) { planted.push_back(std::make_unique<int>(1)); },
                proc);
            guarded.startDevice(device, proc);
            eventually([] { return GuardedHardware::frames() > 0; });
            std::exit(0);
        },
        testing::KilledBySignal(SIGABRT), "forbidden on a real-time thread: malloc");
}

}
}
