// The stream against the system's own libasound, whose file plugin stands in for the hardware.

#include "platform/linux/alsa/AlsaStream.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace tallyvox {
namespace {

TEST(AlsaFile, HoldsTheSignalExactly) {
    constexpr int kChannels = 64;
    constexpr int kFrames = 20000;
    const TemporaryFolder folder;
    const auto file = folder.path() / "written";
    std::ofstream(folder.path() / "asoundrc")
        << "</usr/share/alsa/alsa.conf>\n"
        << "pcm.tallyvox_file { type file slave.pcm null format raw file \"" << file.string()
        << "\" }\n";
    setenv("ALSA_CONFIG_PATH", (folder.path() / "asoundrc").c_str(), 1);
    TestSignal signal;
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(openAlsaStream("tallyvox_file", {kChannels, 48000}, signal.callback(), stream), 0);
    ASSERT_EQ(stream->start(), 0);
    ASSERT_TRUE(eventually([&] { return signal.frames() > kFrames + 4096; }));
    stream.reset();
    const auto calls = signal.calls();
    EXPECT_EQ(deviation(file, kChannels, kFrames), "");
    EXPECT_EQ(signal.calls(), calls);
}

}
}
