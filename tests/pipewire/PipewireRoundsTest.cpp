#include "platform/linux/pipewire/pipewireLayer.h"
#include "tests/pipewire/listing.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/rounds.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

TEST(PipewireRoundsTest, StartingAndStoppingLeavesNothingBehind) {
    if (!PipewireServer::available())
        GTEST_SKIP() << "pipewire is not installed";
    const PipewireServer server({{"Device", 64, 48000}});
    const auto layer = makePipewireLayer();
    const auto id = await(*layer, "Device", 64).id;
    expectLevelRounds(rounds(8), [&](const Hardware::IOCallback& callback, auto& stream) {
        return layer->open(id, callback, stream);
    });
    ASSERT_TRUE(eventually([&] { return layer->devices()->size() == 1; }));
}

}
}
