#include "platform/linux/pipewire/pipewireLayer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

class PipewireStreamTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!PipewireServer::available())
            GTEST_SKIP() << "pipewire is not installed";
        server = std::make_unique<PipewireServer>(
            std::vector<PipewireServer::Sink>{{"Eight", 8, 44100}, {"Sixty-four", 64, 48000}});
        layer = makePipewireLayer();
    }

    /// The id of the device `name` once it has `channels` channels; 0 where that never happens.
    std::uint32_t find(const std::string& name, std::size_t channels) {
        std::uint32_t id = 0;
        eventually([&] {
            const auto devices = layer->devices().value_or(std::vector<DeviceRecord>{});
            for (const auto& device : devices)
                if (device.name == name && device.buffers.size() == channels)
                    id = device.id;
            return id != 0;
        });
        return id;
    }

    void playAndCompare(std::uint32_t id, PipewireOutput& ear, int channels, std::int64_t frames) {
        const TestSignal signal;
        std::unique_ptr<Stream> stream;
        ASSERT_EQ(layer->open(id, signal.callback(), stream), 0);
        ASSERT_EQ(stream->start(), 0);
        ASSERT_TRUE(ear.captured());
        stream->stop();
        EXPECT_EQ(deviation(file(), channels, frames), "");
        EXPECT_EQ(stream->xruns(), 0U);
    }

    std::filesystem::path file() const { return folder.path() / "capture"; }

    TemporaryFolder folder;
    std::unique_ptr<PipewireServer> server;
    std::unique_ptr<Layer> layer;
};

TEST_F(PipewireStreamTest, EveryChannelOfAServersOwnDeviceIsExact) {
    auto ear = PipewireOutput::monitor("Eight", 8, file(), 44100);
    playAndCompare(find("Eight", 8), ear, 8, 44100);
}

TEST_F(PipewireStreamTest, SixtyFourChannelsOfAServersOwnDeviceAreExact) {
    auto ear = PipewireOutput::monitor("Sixty-four", 64, file(), 48000);
    playAndCompare(find("Sixty-four", 64), ear, 64, 48000);
}

class WideDevice : public PipewireStreamTest,
                   public ::testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(WideDevice, IsExactOnEveryChannel) {
    const auto [channels, rate] = GetParam();
    PipewireOutput ear("Wide", channels, rate, file(), rate);
    playAndCompare(find("Wide", static_cast<std::size_t>(channels)), ear, channels, rate);
}

INSTANTIATE_TEST_SUITE_P(PipewireStreamTest, WideDevice,
                         ::testing::Values(std::pair{8, 44100}, std::pair{128, 96000},
                                           std::pair{200, 48000}));

}
}
