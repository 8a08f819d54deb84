#include "tests/ctl/Announced.h"
#include "tests/ctl/Companion.h"

#include <sndfile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace tallyvox {
namespace {

constexpr std::int64_t channels = 128;
constexpr std::int64_t rate = 96000;
constexpr std::int64_t seconds = 95;
constexpr std::int64_t frames = seconds * rate;
static_assert(frames * channels * 4 > std::int64_t{1} << 32);

TEST(LargeExport, BeyondFourGibibytesPlaysBackRight) {
    const Companion companion;
    const auto path = companion.file("large.wav");
    const Outcome outcome = tallyvox::run(
        companion.command({"export", path, "--channels", std::to_string(channels), "--rate",
                           std::to_string(rate), "--all", "--seconds", std::to_string(seconds)}),
        std::chrono::minutes(10));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;

    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    EXPECT_EQ(info.format & SF_FORMAT_TYPEMASK, SF_FORMAT_RF64);
    EXPECT_EQ(info.channels, channels);
    EXPECT_EQ(info.samplerate, rate);
    ASSERT_EQ(info.frames, frames);

    const Announced announced{channels, rate, -24, 0.7, false, 1, 128};
    const std::int64_t cycle = announced.cycle();
    const std::vector<float> expected = announced.samples(cycle);
    std::vector<float> cycleRead(expected.size());
    std::int64_t wrong = 0;
    for (std::int64_t start = 0; start < frames; start += cycle) {
        const std::int64_t count = std::min(cycle, frames - start);
        ASSERT_EQ(sf_readf_float(file, cycleRead.data(), count), count);
        if (!std::equal(cycleRead.begin(), cycleRead.begin() + count * channels, expected.begin()))
            ++wrong;
    }
    EXPECT_EQ(wrong, 0);
    sf_close(file);

    if (run({.line = {"sh", "-c", "command -v ffprobe"}}).exitCode == 0) {
        EXPECT_EQ(run({.line = {"ffprobe", "-v", "error", "-show_entries",
                                "stream=sample_rate,channels,duration", "-of",
                                "default=noprint_wrappers=1:nokey=1", path}})
                      .out,
                  "96000\n128\n95.000000\n");
    }
}

}
}
