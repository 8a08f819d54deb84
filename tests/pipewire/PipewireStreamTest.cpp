#include "platform/linux/pipewire/pipewireLayer.h"
#include "tests/pipewire/listing.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/TestSignal.h"

#include <gtest/gtest.h>

#include <atomic>

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

    /// Plays on the device `name` until the ear that `makeEar` makes has captured `frames` frames,
    /// and compares them. A capture with gaps, or none, is tried again, for a machine may be busy.
    template<class MakeEar>
    void playAndCompare(const std::string& name, int channels, std::int64_t frames,
                        MakeEar makeEar) {
        bool late = true;
        for (int attempt = 0; late && attempt < 4; ++attempt) {
            PipewireOutput ear = makeEar();
            const auto id = await(*layer, name, static_cast<std::size_t>(channels)).id;
            const TestSignal signal;
            std::unique_ptr<Stream> stream;
            ASSERT_EQ(layer->open(id, signal.callback(), stream), 0);
            const auto status = stream->start();
            if (status == kAudioHardwareNotRunningError)
                continue; // the server does not come to it in time
            ASSERT_EQ(status, 0);
            ASSERT_TRUE(ear.captured());
            late = ear.late() || stream->xruns() > 0;
            stream->stop();
        }
        EXPECT_FALSE(late) << "the machine does not keep up";
        EXPECT_EQ(deviation(file(), channels, frames), "");
    }

    std::filesystem::path file() const { return folder.path() / "capture"; }

    TemporaryFolder folder;
    std::unique_ptr<PipewireServer> server;
    std::unique_ptr<Layer> layer;
};

TEST_F(PipewireStreamTest, EveryChannelOfAServersOwnDeviceIsExact) {
    playAndCompare("Eight", 8, 44100,
                   [&] { return PipewireOutput::monitor("Eight", 8, file(), 44100); });
}

TEST_F(PipewireStreamTest, SixtyFourChannelsOfAServersOwnDeviceAreExact) {
    playAndCompare("Sixty-four", 64, 48000,
                   [&] { return PipewireOutput::monitor("Sixty-four", 64, file(), 48000); });
}

TEST_F(PipewireStreamTest, AnotherRateInTheMiddleIsSilentFromItsFirstFrame) {
    constexpr std::int64_t kFrames = 100'000;
    bool late = true;
    for (int attempt = 0; late && attempt < 4; ++attempt) {
        auto ear = PipewireOutput::monitor("Eight", 8, file(), kFrames);
        const TestSignal signal;
        std::unique_ptr<Stream> stream;
        const auto id = await(*layer, "Eight", 8).id;
        ASSERT_EQ(layer->open(id, signal.callback(), stream), 0);
        ASSERT_EQ(stream->start(), 0);
        ASSERT_TRUE(eventually([&] { return signal.frames() > kFrames / 5; }));
        server->forceRate(96000);
        ASSERT_TRUE(ear.captured());
        late = ear.late();
        const auto changed = ear.otherRateFrom();
        ASSERT_TRUE(changed) << "the rate changed when the capture was over";
        EXPECT_EQ(soundAfter(file(), 8, *changed), std::nullopt);
        EXPECT_TRUE(late || deviation(file(), 8, *changed).empty())
            << deviation(file(), 8, *changed);
        EXPECT_EQ(layer->device(id)->rate, 96000);
        server->forceRate(0);
    }
    EXPECT_FALSE(late) << "the machine does not keep up";
}

TEST_F(PipewireStreamTest, ACallbackThatIsLateIsCounted) {
    std::unique_ptr<Stream> stream;
    std::atomic<std::int64_t> calls = 0;
    const auto lateOnce = [&](AudioBufferList*) {
        if (++calls == 3)
            std::this_thread::sleep_for(std::chrono::milliseconds(400));
    };
    ASSERT_EQ(layer->open(await(*layer, "Eight", 8).id, lateOnce, stream), 0);
    ASSERT_EQ(stream->start(), 0);
    EXPECT_EQ(stream->xruns(), 0U);
    EXPECT_TRUE(eventually([&] { return stream->xruns() > 0; }));
    EXPECT_TRUE(eventually([&] { return calls > 5; })) << "it goes on";
}

class WideDevice : public PipewireStreamTest,
                   public ::testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(WideDevice, IsExactOnEveryChannel) {
    const int channels = GetParam().first;
    const int rate = GetParam().second;
    playAndCompare("Wide", channels, rate,
                   [&] { return PipewireOutput("Wide", channels, rate, file(), rate); });
}

INSTANTIATE_TEST_SUITE_P(PipewireStreamTest, WideDevice,
                         ::testing::Values(std::pair{8, 44100}, std::pair{128, 96000},
                                           std::pair{200, 48000}));

}
}
