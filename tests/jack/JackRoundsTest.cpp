#include "platform/linux/jack/JackLayer.h"
#include "tests/jack/listing.h"
#include "tests/support/JackServer.h"
#include "tests/support/rounds.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

std::ptrdiff_t portsOf(const std::string& client) {
    const auto listed = run({.line = {"jack_lsp"}}).out;
    std::ptrdiff_t count = 0;
    for (auto at = listed.find(client + ':'); at != std::string::npos;
         at = listed.find(client + ':', at + 1))
        ++count;
    return count;
}

TEST(JackRoundsTest, StartingAndStoppingLeavesNothingBehind) {
    if (!JackServer::available())
        GTEST_SKIP() << "jackd is not installed";
    const JackServer server({.playback = 64});
    const auto layer = makeJackLayer(JackServers::own);
    const auto id = await(*layer, "system").id;
    expectLevelRounds(rounds(5), [&](Hardware::IOCallback callback, auto& stream) {
        return layer->open(id, std::move(callback), stream);
    });
    EXPECT_EQ(portsOf("tallyvox"), 0);
    EXPECT_EQ(run({.line = {"jack_property", "-l"}}).out.find("Channel"), std::string::npos);
}

}
}
