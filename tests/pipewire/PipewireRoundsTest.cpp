#include "platform/linux/pipewire/pipewireLayer.h"
#include "tests/pipewire/listing.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/Resources.h"
#include "tests/support/TestSignal.h"
#include "tests/support/environmentNumber.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tallyvox {
namespace {

/// TALLYVOX_ROUNDS, or as many as do not hold up the suite.
int rounds() { return environmentNumber("TALLYVOX_ROUNDS", 8); }

TEST(PipewireRoundsTest, StartingAndStoppingLeavesNothingBehind) {
    if (!PipewireServer::available())
        GTEST_SKIP() << "pipewire is not installed";
    const PipewireServer server({{"Device", 64, 48000}});
    const auto layer = makePipewireLayer();
    const auto id = await(*layer, "Device", 64).id;
    const TestSignal signal;
    const auto play = [&] {
        const auto before = signal.calls();
        std::unique_ptr<Stream> stream;
        ASSERT_EQ(layer->open(id, signal.callback(), stream), 0);
        ASSERT_EQ(stream->start(), 0);
        ASSERT_TRUE(eventually([&] { return signal.calls() >= before + 2; }));
        stream->stop();
        const auto stopped = signal.calls();
        stream.reset();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ASSERT_EQ(signal.calls(), stopped) << "a call came after the stop";
    };

    const Resources idle = Resources::held();
    // The memory of the ports' buffers is the server's, which takes a moment to claim it back.
    const auto allGivenBack = [&] {
        return eventually([&] { return Resources::held().descriptors == idle.descriptors; });
    };
    for (int warmUp = 0; warmUp < 3; ++warmUp)
        play();
    const Resources before = Resources::held();
    for (int round = 0; round < rounds() && !HasFatalFailure(); ++round) {
        play();
        ASSERT_TRUE(allGivenBack()) << Resources::held().descriptors << " descriptors, "
                                    << idle.descriptors << " before the first start";
    }
    const Resources after = Resources::held();
    EXPECT_EQ(after.threads, before.threads);
    // The sanitizers keep what is freed, and look for leaks themselves.
    if (TALLYVOX_SANITIZED == 0) {
        EXPECT_LT(after.kibibytes, before.kibibytes + 4096);
    }
    RecordProperty("rounds", rounds());
    RecordProperty("kibibytes", static_cast<int>(after.kibibytes - before.kibibytes));
    ASSERT_TRUE(eventually([&] { return layer->devices()->size() == 1; }));
}

}
}
