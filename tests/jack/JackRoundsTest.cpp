#include "platform/linux/jack/JackLayer.h"
#include "tests/jack/listing.h"
#include "tests/support/JackServer.h"
#include "tests/support/Resources.h"
#include "tests/support/TestSignal.h"
#include "tests/support/environmentNumber.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tallyvox {
namespace {

/// TALLYVOX_ROUNDS, or as many as do not hold up the suite.
int rounds() { return environmentNumber("TALLYVOX_ROUNDS", 5); }

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
    const TestSignal signal;
    const auto play = [&] {
        std::unique_ptr<Stream> stream;
        ASSERT_EQ(layer->open(id, signal.callback(), stream), 0);
        ASSERT_EQ(stream->start(), 0);
        const auto before = signal.calls();
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
        ASSERT_TRUE(eventually(
            [&] { return std::chrono::steady_clock::now() > end && signal.calls() > before + 2; }));
        stream->stop();
        const auto stopped = signal.calls();
        stream.reset();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ASSERT_EQ(signal.calls(), stopped) << "a call came after the stop";
    };

    for (int warmUp = 0; warmUp < 3; ++warmUp)
        play();
    const Resources before = Resources::held();
    for (int round = 0; round < rounds() && !HasFatalFailure(); ++round)
        play();
    const Resources after = Resources::held();
    EXPECT_EQ(after.threads, before.threads);
    EXPECT_EQ(after.descriptors, before.descriptors);
    // The sanitizers keep what is freed, and look for leaks themselves.
    if (TALLYVOX_SANITIZED == 0) {
        EXPECT_LT(after.kibibytes, before.kibibytes + 4096);
    }
    EXPECT_EQ(portsOf("tallyvox"), 0);
    EXPECT_EQ(run({.line = {"jack_property", "-l"}}).out.find("Channel"), std::string::npos);
    RecordProperty("rounds", rounds());
    RecordProperty("kibibytes", static_cast<int>(after.kibibytes - before.kibibytes));
}

}
}
