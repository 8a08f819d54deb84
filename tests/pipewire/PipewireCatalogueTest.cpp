#include "platform/linux/pipewire/pipewireLayer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/eventually.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tallyvox {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

std::string line(const DeviceRecord& device) {
    return device.name + " " + std::to_string(device.buffers.size()) + "@" +
           std::to_string(static_cast<int>(device.rate));
}

/// What is listed: "-" where no server answers.
std::string listed(Layer& layer) {
    const auto devices = layer.devices();
    if (!devices)
        return "-";
    std::string text;
    for (const DeviceRecord& device : *devices)
        text += (text.empty() ? "" : ", ") + line(device);
    return text;
}

bool becomes(Layer& layer, const std::string& text) {
    if (eventually([&] { return listed(layer) == text; }))
        return true;
    ADD_FAILURE() << "listed: " << listed(layer);
    return false;
}

class PipewireCatalogueTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!PipewireServer::available())
            GTEST_SKIP() << "pipewire is not installed";
    }

    static std::unique_ptr<PipewireServer> makeServer() {
        return std::make_unique<PipewireServer>(
            std::vector<PipewireServer::Sink>{{"Zebra", 8, 44100}, {"Ant", 64, 48000}});
    }
};

TEST_F(PipewireCatalogueTest, TheFirstListingIsComplete) {
    const auto server = makeServer();
    EXPECT_EQ(listed(*makePipewireLayer()), "Zebra 8@44100, Ant 64@48000");
}

TEST_F(PipewireCatalogueTest, DevicesComeAndGo) {
    const auto server = makeServer();
    const auto layer = makePipewireLayer();
    ASSERT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
    const auto ids = [&] {
        std::vector<std::uint32_t> list;
        const auto devices = layer->devices().value_or(std::vector<DeviceRecord>{});
        list.reserve(devices.size());
        for (const auto& device : devices)
            list.push_back(device.id);
        return list;
    };
    const auto before = ids();
    server->remove("Zebra");
    ASSERT_TRUE(becomes(*layer, "Ant 64@48000"));
    EXPECT_EQ(ids(), std::vector<std::uint32_t>{before[1]});
    EXPECT_FALSE(layer->device(before[0]));
    server->add({"Zebra", 8, 44100});
    ASSERT_TRUE(becomes(*layer, "Ant 64@48000, Zebra 8@44100"));
    EXPECT_EQ(ids()[0], before[1]);
    EXPECT_EQ(std::ranges::count(before, ids()[1]), 0) << "an id was used for another device";
}

TEST_F(PipewireCatalogueTest, WideDevicesOfOtherProgramsAreListed) {
    const auto server = makeServer();
    const auto layer = makePipewireLayer();
    PipewireOutput wide("Wide", 200, 96000);
    ASSERT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000, Wide 200@96000"));
    wide.remove();
    ASSERT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
}

TEST_F(PipewireCatalogueTest, AForcedRateIsReported) {
    const auto server = makeServer();
    const auto layer = makePipewireLayer();
    server->forceRate(96000);
    ASSERT_TRUE(becomes(*layer, "Zebra 8@96000, Ant 64@96000"));
    server->forceRate(0);
    ASSERT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
}

TEST_F(PipewireCatalogueTest, AKilledServerIsNoticedAndFoundAgain) {
    const auto server = makeServer();
    const auto layer = makePipewireLayer();
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
        server->kill();
        ASSERT_TRUE(becomes(*layer, "-"));
        server->start();
    }
    EXPECT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
}

TEST_F(PipewireCatalogueTest, AServerThatStartsLaterIsFound) {
    const auto server = makeServer();
    server->kill();
    const auto layer = makePipewireLayer();
    EXPECT_EQ(listed(*layer), "-");
    server->start();
    EXPECT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
}

TEST_F(PipewireCatalogueTest, WithoutAServerListingIsQuick) {
    const auto server = makeServer();
    server->kill();
    const auto layer = makePipewireLayer();
    std::vector<Clock::duration> times;
    for (int round = 0; round < 5; ++round) {
        const auto begin = Clock::now();
        EXPECT_EQ(listed(*layer), "-");
        times.push_back(Clock::now() - begin);
    }
    // The best of some, for other programs may hold the processor in any of them.
    EXPECT_LT(*std::ranges::min_element(times), 50ms);
}

TEST_F(PipewireCatalogueTest, TheListStaysWhatItIsWhileADevicePlays) {
    const auto server = makeServer();
    const auto layer = makePipewireLayer();
    const auto before = layer->devices().value();
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(layer->open(
                  before.back().id, [](AudioBufferList*) {}, stream),
              0);
    ASSERT_EQ(stream->start(), 0);
    const auto after = layer->devices().value();
    ASSERT_EQ(listed(*layer), "Zebra 8@44100, Ant 64@48000") << "its own stream is no device";
    EXPECT_EQ(after.front().id, before.front().id);
    EXPECT_EQ(after.back().id, before.back().id);
}

TEST_F(PipewireCatalogueTest, AServerThatHangsIsWaitedForOnce) {
    const auto server = makeServer();
    server->freeze();
    const auto layer = makePipewireLayer();
    const auto begin = Clock::now();
    EXPECT_EQ(listed(*layer), "-");
    EXPECT_LT(Clock::now() - begin, 2s);
    const auto again = Clock::now();
    for (int round = 0; round < 20; ++round)
        EXPECT_EQ(listed(*layer), "-");
    EXPECT_LT(Clock::now() - again, 1s);
    server->thaw();
    EXPECT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
}

TEST_F(PipewireCatalogueTest, AHungServerKeepsItsDevicesListedUntilItIsGone) {
    const auto server = makeServer();
    const auto layer = makePipewireLayer();
    ASSERT_TRUE(becomes(*layer, "Zebra 8@44100, Ant 64@48000"));
    server->freeze();
    const auto begin = Clock::now();
    EXPECT_EQ(listed(*layer), "Zebra 8@44100, Ant 64@48000");
    EXPECT_LT(Clock::now() - begin, 1s);
    server->kill();
    EXPECT_TRUE(becomes(*layer, "-"));
}

}
}
