#include "audio/AudioOutput.h"
#include "audio/xruns.h"
#include "tests/soak/Crowd.h"
#include "tests/soak/Ear.h"
#include "tests/soak/announcements.h"
#include "tests/soak/trials.h"
#include "tests/support/JackServer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/VoicesFolder.h"
#include "tests/support/eventually.h"

#include <chrono>
#include <cstdio>
#include <optional>
#include <thread>

namespace tallyvox {
namespace {

constexpr std::int64_t kChannels = 128;

bool soak(const std::string& server, bool sequential, std::int64_t seconds, bool crowded) {
    Ear ear(expectedRound(kChannels, sequential), kChannels);
    const auto listener =
        server == "jack" ? listenOnJack(ear, kChannels) : listenOnPipewire(ear, kChannels, kRate);
    const auto hardware = layerOf(server);
    const auto device = await(*hardware, kChannels);
    AudioOutput audio(*hardware);
    audio.start(device, std::vector<bool>(kChannels, true), kLevel, kGap, sequential);
    std::optional<Crowd> crowd;
    if (crowded)
        crowd.emplace();
    // By what is heard, not by the clock: a busy server may be slow.
    const std::int64_t due = kRate * seconds;
    std::int64_t heard = 0;
    while (heard < due && eventually([&] { return ear.right() + ear.wrong() > heard; }))
        heard = ear.right() + ear.wrong();
    const auto right = ear.right();
    const auto wrong = ear.wrong();
    const auto late = ear.late();
    const auto jumps = ear.jumps();
    const auto missed = ear.missed();
    crowd.reset();
    // A cycle that is missing is counted when the next one begins.
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const auto lost = static_cast<std::int64_t>(xruns(device.id, *hardware).value_or(0));
    audio.stop();
    // A machine that is too busy may hold up the server, or this device: some cycles are silent
    // then, or unheard, but what is heard is right. It is where it should be but for what was
    // counted, and for the rare cycle that PipeWire itself handed on too late.
    const std::int64_t rare = server == "pipewire" || crowded ? seconds / 10 + 1 : 0;
    const bool held = right >= due && wrong == 0 && jumps + late / kLongestCycle <= lost + rare;
    std::printf("%s%s, %s: %lld channels, %lld frames right, %lld wrong, %lld late, %lld missed, "
                "%lld jumps, %lld xruns: %s\n",
                server.c_str(), crowded ? " in a crowd" : "", sequential ? "in turn" : "together",
                static_cast<long long>(kChannels), static_cast<long long>(right),
                static_cast<long long>(wrong), static_cast<long long>(late),
                static_cast<long long>(missed), static_cast<long long>(jumps),
                static_cast<long long>(lost), held ? "held" : "BROKEN");
    return held;
}

}

bool soak(const std::string& server, std::int64_t seconds, bool crowded) {
    VoicesFolder voices;
    voices.fillUpTo(kChannels);
    std::unique_ptr<JackServer> jack;
    std::unique_ptr<PipewireServer> pipewire;
    if (server == "jack")
        jack = std::make_unique<JackServer>(JackServer::Setup{.period = 4096});
    else
        pipewire = std::make_unique<PipewireServer>();
    const bool together = soak(server, false, (seconds + 1) / 2, crowded);
    return soak(server, true, (seconds + 1) / 2, crowded) && together;
}

}
