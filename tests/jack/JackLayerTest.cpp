#include "platform/linux/jack/JackLayer.h"
#include "tests/jack/listing.h"
#include "tests/support/JackServer.h"
#include "tests/support/TestSignal.h"

#include <gmock/gmock.h>

#include <jack/jack.h>

#include <filesystem>

namespace tallyvox {
namespace {

using testing::ElementsAre;

class JackLayerTest : public testing::Test {
protected:
    void SetUp() override {
        if (!JackServer::available())
            GTEST_SKIP() << "jackd is not installed";
    }
};

TEST_F(JackLayerTest, SaysNothingWithoutAServer) {
    setenv("JACK_DEFAULT_SERVER", "tallyvox-test-nobody", 1);
    testing::internal::CaptureStderr();
    {
        const auto layer = makeJackLayer(JackServers::own);
        EXPECT_EQ(layer->devices(), std::nullopt);
        std::unique_ptr<Stream> stream;
        EXPECT_EQ(layer->open(deviceId(LayerTag::jack, 2), {}, stream),
                  kAudioHardwareNotRunningError);
        EXPECT_EQ(stream, nullptr);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(JackLayerTest, ListsPhysicalInputsByClientInTheOrderOfArrival) {
    JackServer server({.rate = 44100, .playback = 2});
    JackOutput second("zebra", 5);
    JackOutput third("ant: 1", 3);
    const auto layer = makeJackLayer(JackServers::own);
    const auto device = await(*layer, "zebra");
    EXPECT_EQ(device.buffers, std::vector<std::uint32_t>(5, 1));
    EXPECT_EQ(device.rate, 44100.0);
    EXPECT_EQ(device.id >> 30U, static_cast<std::uint32_t>(LayerTag::jack));
    EXPECT_THAT(names(*layer), ElementsAre("system", "zebra", "ant: 1"));
}

TEST_F(JackLayerTest, LeavesOutWhatIsNoOutput) {
    JackServer server({});
    JackOutput device("device", 1);
    const auto client = JackClient::open("program");
    ASSERT_NE(client, nullptr);
    auto* program = client->get();
    jack_port_register(program, "input", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    jack_port_register(program, "microphone", JACK_DEFAULT_AUDIO_TYPE,
                       JackPortIsOutput | JackPortIsPhysical, 0);
    jack_port_register(program, "midi", JACK_DEFAULT_MIDI_TYPE,
                       JackPortIsInput | JackPortIsPhysical, 0);
    const auto layer = makeJackLayer(JackServers::own);
    await(*layer, "device");
    EXPECT_THAT(names(*layer), ElementsAre("device"));
}

TEST_F(JackLayerTest, NeverGivesAnIdToAnotherDevice) {
    JackServer server({});
    const auto layer = makeJackLayer(JackServers::own);
    auto device = std::make_unique<JackOutput>("device", 2);
    const auto first = await(*layer, "device").id;
    EXPECT_EQ(await(*layer, "device").id, first);
    device.reset();
    ASSERT_TRUE(eventually([&] { return !find(*layer, "device"); }));
    device = std::make_unique<JackOutput>("device", 2);
    EXPECT_NE(await(*layer, "device").id, first);
}

TEST_F(JackLayerTest, NamesAndNumbersItsPorts) {
    JackServer server({.playback = 12});
    const auto layer = makeJackLayer(JackServers::own);
    const auto device = await(*layer, "system");
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(layer->open(device.id, TestSignal().callback(), stream), 0);
    ASSERT_EQ(stream->start(), 0);
    EXPECT_THAT(names(*layer), ElementsAre("system"));
    const auto listed = run({.line = {"jack_lsp", "-c"}});
    EXPECT_EQ(listed.exitCode, 0);
    for (int i = 1; i <= 12; ++i) {
        const auto line = "tallyvox:out_" + std::to_string(i) + "\n";
        const auto wire = "   system:playback_" + std::to_string(i) + "\n";
        const auto at = listed.out.find("\n" + line);
        ASSERT_NE(at, std::string::npos) << listed.out;
        EXPECT_EQ(listed.out.compare(at + 1 + line.size(), 3, "   "), 0) << listed.out;
        EXPECT_NE(listed.out.find(wire, at), std::string::npos) << listed.out;
    }
    EXPECT_TRUE(eventually([] {
        const auto properties = run({.line = {"jack_property", "-l"}});
        return properties.out.find("order value: 12 type") != std::string::npos &&
               properties.out.find("pretty-name value: Channel 12 type") != std::string::npos;
    }));
}

TEST_F(JackLayerTest, PlaysOnceMoreAfterAStop) {
    JackServer server({.playback = 4});
    const auto layer = makeJackLayer(JackServers::own);
    const auto device = await(*layer, "system");
    TestSignal signal;
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(layer->open(device.id, signal.callback(), stream), 0);
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(stream->start(), 0);
        const auto before = signal.calls();
        EXPECT_TRUE(eventually([&] { return signal.calls() > before + 2; }));
        stream->stop();
        const auto after = signal.calls();
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        EXPECT_EQ(signal.calls(), after);
    }
}

TEST_F(JackLayerTest, ReleasesTheCallbackWithTheStream) {
    JackServer server({.playback = 1});
    const auto layer = makeJackLayer(JackServers::own);
    const auto token = std::make_shared<int>();
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(layer->open(
                  await(*layer, "system").id, [token](AudioBufferList*) {}, stream),
              0);
    ASSERT_EQ(stream->start(), 0);
    EXPECT_EQ(token.use_count(), 2);
    stream.reset();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(JackLayerTest, CountsTheCyclesThatCameTooLate) {
    JackServer server({.period = 256, .playback = 1, .synchronous = false});
    const auto layer = makeJackLayer(JackServers::own);
    std::unique_ptr<Stream> stream;
    const auto late = [](AudioBufferList*) {
        std::this_thread::sleep_for(std::chrono::milliseconds(40));
    };
    ASSERT_EQ(layer->open(await(*layer, "system").id, late, stream), 0);
    EXPECT_EQ(stream->xruns(), 0U);
    ASSERT_EQ(stream->start(), 0);
    EXPECT_TRUE(eventually([&] { return stream->xruns() > 0; }));
}

struct Shape {
    int rate;
    int channels;
};

class JackPlayback : public JackLayerTest, public testing::WithParamInterface<Shape> {};

TEST_P(JackPlayback, IsExact) {
    const auto [rate, channels] = GetParam();
    const int frames = rate / 2;
    JackServer server({.rate = rate});
    const auto folder =
        std::filesystem::temp_directory_path() / ("tallyvox-capture-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    const auto file = folder / "capture";
    {
        JackOutput device("device", channels, file, frames);
        const auto layer = makeJackLayer(JackServers::own);
        TestSignal signal;
        std::unique_ptr<Stream> stream;
        ASSERT_EQ(layer->open(await(*layer, "device").id, signal.callback(), stream), 0);
        ASSERT_EQ(stream->start(), 0);
        ASSERT_TRUE(device.captured());
        EXPECT_EQ(deviation(file, channels, frames), "");
    }
    std::filesystem::remove_all(folder);
}

INSTANTIATE_TEST_SUITE_P(Shapes, JackPlayback,
                         testing::Values(Shape{44100, 8}, Shape{48000, 64}, Shape{96000, 128},
                                         Shape{48000, 200}),
                         [](const auto& shape) {
                             return std::to_string(shape.param.channels) + "At" +
                                    std::to_string(shape.param.rate);
                         });

}
}
