#include "engine/Renderer.h"

#include <gtest/gtest.h>

#include <random>

namespace tallyvox {
namespace {

constexpr std::int64_t channels = 8;
constexpr std::int64_t voiceFrames = 50021;
constexpr std::int64_t gapFrames = 9973;
constexpr std::int64_t thirtyDays = std::int64_t{30} * 24 * 3600 * 96000;

/// Unique to the channel and the frame, and exact in single precision.
float voiceSample(std::int64_t channel, std::int64_t offset) {
    return static_cast<float>(channel * 65536 + offset + 1);
}

float expectedSample(std::int64_t channel, std::int64_t time, bool sequential) {
    const std::int64_t cycle = voiceFrames + gapFrames;
    const std::int64_t offset = time % cycle;
    const bool speaks = !sequential || time / cycle % channels == channel;
    return speaks && offset < voiceFrames ? voiceSample(channel, offset) : 0.0F;
}

/// Callbacks of every size, most of them into a device that takes no samples, with a look at the
/// samples after each: the phase must be right to the frame after a month at 96 kHz.
void playAMonth(bool sequential, std::uint32_t seed) {
    std::vector<std::vector<float>> voices;
    for (std::int64_t g = 0; g < channels; ++g) {
        auto& voice = voices.emplace_back();
        for (std::int64_t f = 0; f < voiceFrames; ++f)
            voice.push_back(voiceSample(g, f));
    }
    Renderer renderer(voices, std::vector<bool>(channels, true), 1.0F, gapFrames, sequential);

    OwnedBufferList unheard({1});
    std::vector<float> samples(channels * 16);
    OwnedBufferList heard({channels});
    heard.buffers()[0].mData = samples.data();
    heard.buffers()[0].mDataByteSize = static_cast<std::uint32_t>(samples.size() * 4);

    std::mt19937 random(seed);
    std::int64_t time = 0;
    std::int64_t calls = 0;
    while (time < thirtyDays) {
        const auto frames = static_cast<std::uint32_t>(random() >> 8U);
        unheard.buffers()[0].mDataByteSize = 4 * frames;
        renderer.render(unheard.get());
        time += frames;
        renderer.render(heard.get());
        for (std::int64_t i = 0; i < channels * 16; ++i)
            ASSERT_EQ(samples[static_cast<std::size_t>(i)],
                      expectedSample(i % channels, time + i / channels, sequential))
                << "frame " << time + i / channels << ", channel " << i % channels;
        time += 16;
        calls += 2;
    }
    EXPECT_GT(calls, 10000);
}

TEST(LongRun, AfterAMonthAllChannelsAreInPhaseToTheFrame) { playAMonth(false, 30); }

TEST(LongRun, AfterAMonthTheTurnsAreInPhaseToTheFrame) { playAMonth(true, 31); }

}
}
