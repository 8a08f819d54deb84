#include "audio/AudioOutput.h"
#include "base/Error.h"
#include "tests/soak/announcements.h"
#include "tests/soak/trials.h"
#include "tests/support/JackServer.h"
#include "tests/support/Resources.h"
#include "tests/support/VoicesFolder.h"

#include <cstdio>

namespace tallyvox {
namespace {

constexpr std::int64_t kChannels = 8;
/// What an allocator may keep.
constexpr std::int64_t kSlack = 4096;

}

bool cycles(const std::string& server, std::int64_t count) {
    const VoicesFolder voices;
    std::unique_ptr<JackServer> jack;
    if (server == "jack")
        jack = std::make_unique<JackServer>(
            JackServer::Setup{.playback = kChannels, .synchronous = false});
    const auto hardware = layerOf(server == "jack" ? server : "virtual:8@1000000");
    const auto device = await(*hardware, kChannels);
    AudioOutput audio(*hardware);
    std::int64_t refused = 0;
    const auto play = [&](std::int64_t times) {
        for (; times > 0; --times) {
            try {
                audio.start(device, std::vector<bool>(kChannels, true), kLevel, kGap,
                            times % 2 == 0);
            } catch (const Error&) {
                ++refused;
            }
            audio.stop();
        }
    };
    play(8);
    const auto before = Resources::held();
    play(count);
    const auto after = Resources::held();
    // The sanitizers keep what is freed, and look for leaks themselves.
    // A server that a busy machine keeps from answering for too long refuses a start.
    const bool level = refused * 20 <= count && after.threads == before.threads &&
                       after.descriptors == before.descriptors &&
                       (TALLYVOX_SANITIZED != 0 || after.kibibytes < before.kibibytes + kSlack);
    std::printf(
        "%s: %lld starts and stops, %lld refused, threads %lld to %lld, descriptors %lld to %lld, "
        "resident KiB %lld to %lld: %s\n",
        server.c_str(), static_cast<long long>(count), static_cast<long long>(refused),
        static_cast<long long>(before.threads), static_cast<long long>(after.threads),
        static_cast<long long>(before.descriptors), static_cast<long long>(after.descriptors),
        static_cast<long long>(before.kibibytes), static_cast<long long>(after.kibibytes),
        level ? "level" : "BROKEN");
    return level;
}

}
