#include "audio/AudioOutput.h"
#include "audio/xruns.h"
#include "tests/soak/Ear.h"
#include "tests/soak/announcements.h"
#include "tests/soak/trials.h"
#include "tests/support/JackServer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/VoicesFolder.h"
#include "tests/support/eventually.h"

#include <cstdio>

namespace tallyvox {
namespace {

constexpr std::int64_t kChannels = 128;
/// Frames of one I/O cycle of either server, at most.
constexpr std::int64_t kLongestCycle = 8192;

bool soak(const std::string& server, bool sequential, std::int64_t seconds) {
    Ear ear(expectedRound(kChannels, sequential), kChannels);
    const auto listener =
        server == "jack" ? listenOnJack(ear, kChannels) : listenOnPipewire(ear, kChannels, kRate);
    const auto hardware = layerOf(server);
    const auto device = await(*hardware, kChannels);
    AudioOutput audio(*hardware);
    audio.start(device, std::vector<bool>(kChannels, true), kLevel, kGap, sequential);
    // By what is heard, not by the clock: a busy server may be slow.
    const std::int64_t due = kRate * seconds;
    std::int64_t heard = 0;
    while (heard < due && eventually([&] { return ear.right() + ear.wrong() > heard; }))
        heard = ear.right() + ear.wrong();
    const auto lost = xruns(device.id, *hardware).value_or(0);
    const auto right = ear.right();
    const auto late = ear.late();
    const auto jumps = ear.jumps();
    audio.stop();
    // A machine that is too busy may hold up the server, or this device: some cycles are silent
    // then, or unheard, but what is heard is right.
    const std::int64_t disturbances = jumps + late / kLongestCycle;
    const bool held = right >= due && ear.wrong() == 0 &&
                      disturbances <= static_cast<std::int64_t>(lost) + seconds / 10 + 1;
    std::printf("%s, %s: %lld channels, %lld frames right, %lld wrong, %lld late, %lld jumps, %llu "
                "xruns: %s\n",
                server.c_str(), sequential ? "in turn" : "together",
                static_cast<long long>(kChannels), static_cast<long long>(right),
                static_cast<long long>(ear.wrong()), static_cast<long long>(late),
                static_cast<long long>(jumps), static_cast<unsigned long long>(lost),
                held ? "held" : "BROKEN");
    return held;
}

}

bool soak(const std::string& server, std::int64_t seconds) {
    VoicesFolder voices;
    voices.fillUpTo(kChannels);
    std::unique_ptr<JackServer> jack;
    std::unique_ptr<PipewireServer> pipewire;
    if (server == "jack")
        jack = std::make_unique<JackServer>(JackServer::Setup{.period = 4096});
    else
        pipewire = std::make_unique<PipewireServer>();
    const bool together = soak(server, false, (seconds + 1) / 2);
    return soak(server, true, (seconds + 1) / 2) && together;
}

}
