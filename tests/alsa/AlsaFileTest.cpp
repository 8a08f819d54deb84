// The stream against the system's own libasound, whose plugins stand in for the hardware.

#include "platform/linux/alsa/AlsaStream.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"
#include "tests/support/rounds.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <thread>

namespace tallyvox {
namespace {

class AlsaFileTest : public testing::Test {
protected:
    /// Lets ALSA know the system's devices and `device`.
    void define(const std::string& device) const {
        const auto file = folder_.path() / "asoundrc";
        std::ofstream(file) << "</usr/share/alsa/alsa.conf>\n" << device << '\n';
        setenv("ALSA_CONFIG_PATH", file.c_str(), 1);
    }

    std::filesystem::path written() const { return folder_.path() / "written"; }

private:
    TemporaryFolder folder_;
};

TEST_F(AlsaFileTest, HoldsTheSignalExactly) {
    constexpr int kChannels = 64;
    constexpr int kFrames = 20000;
    define("pcm.tallyvox_file { type file slave.pcm null format raw file \"" + written().string() +
           "\" }");
    TestSignal signal;
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(openAlsaStream("tallyvox_file", {kChannels, 48000}, signal.callback(), stream), 0);
    ASSERT_EQ(stream->start(), 0);
    ASSERT_TRUE(eventually([&] { return signal.frames() > kFrames + 4096; }));
    stream.reset();
    const auto calls = signal.calls();
    EXPECT_EQ(deviation(written(), kChannels, kFrames), "");
    EXPECT_EQ(signal.calls(), calls);
}

TEST_F(AlsaFileTest, StartingAndStoppingLeavesNothingBehind) {
    define("pcm.tallyvox_null { type null }");
    // The plugin takes everything at once, hardware a period at a time.
    const auto paced = [](Hardware::IOCallback callback) {
        return [callback = std::move(callback)](AudioBufferList* list) {
            callback(list);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        };
    };
    expectLevelRounds(rounds(20), [&](Hardware::IOCallback callback, auto& stream) {
        return openAlsaStream("tallyvox_null", {64, 48000}, paced(std::move(callback)), stream);
    });
}

}
}
