#include "platform/linux/alsa/AlsaStream.h"
#include "tests/alsa/FakeAlsa.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tallyvox {
namespace {

struct Form {
    snd_pcm_format_t alsa;
    SampleFormat ours;
    snd_pcm_access_t access;
};

constexpr std::int64_t kChannels = 3;
/// More than two periods, and no multiple of one.
constexpr std::int64_t kFrames = 2500;

/// What the hardware must get: the signal's `frames` from the first, channel by channel.
std::vector<std::byte> expected(SampleFormat format, std::int64_t firstChannel,
                                std::int64_t channels) {
    const auto size = sampleSize(format);
    std::vector<std::byte> bytes(static_cast<std::size_t>(kFrames * channels) * size);
    for (std::int64_t frame = 0; frame < kFrames; ++frame)
        for (std::int64_t channel = 0; channel < channels; ++channel) {
            const auto sample = testSample(firstChannel + channel, frame);
            convertSamples(&sample, 1, format,
                           &bytes[static_cast<std::size_t>(frame * channels + channel) * size],
                           size);
        }
    return bytes;
}

bool beginsWith(const std::vector<std::byte>& bytes, const std::vector<std::byte>& beginning) {
    return bytes.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), bytes.begin());
}

class AlsaStreamForm : public testing::TestWithParam<Form> {};

TEST_P(AlsaStreamForm, ReachesTheHardwareExactlyWhateverItTakesAtATime) {
    const auto [alsa, ours, access] = GetParam();
    const auto size = sampleSize(ours) * static_cast<std::size_t>(kFrames);
    renewFakeAlsa();
    fakeAlsa().cards[1].devices[2] = {
        .name = "Card", .channels = kChannels, .formats = {alsa}, .access = access};
    TestSignal signal;
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(openAlsaStream("hw:1,2", {kChannels, 48000}, signal.callback(), stream), 0);
    ASSERT_EQ(stream->start(), 0);
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(fakeAlsa().mutex);
        const auto& heard = fakeAlsa().heardChannels;
        return fakeAlsa().heard.size() >= size * kChannels ||
               (heard.size() == kChannels && heard.back().size() >= size);
    }));
    stream.reset();
    if (access == SND_PCM_ACCESS_RW_INTERLEAVED) {
        EXPECT_TRUE(beginsWith(fakeAlsa().heard, expected(ours, 0, kChannels)));
    } else {
        for (std::size_t i = 0; i < kChannels; ++i)
            EXPECT_TRUE(beginsWith(fakeAlsa().heardChannels[i],
                                   expected(ours, static_cast<std::int64_t>(i), 1)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    AlsaStream, AlsaStreamForm,
    testing::Values(
        Form{SND_PCM_FORMAT_FLOAT, SampleFormat::float32, SND_PCM_ACCESS_RW_INTERLEAVED},
        Form{SND_PCM_FORMAT_FLOAT, SampleFormat::float32, SND_PCM_ACCESS_RW_NONINTERLEAVED},
        Form{SND_PCM_FORMAT_S32, SampleFormat::int32, SND_PCM_ACCESS_RW_INTERLEAVED},
        Form{SND_PCM_FORMAT_S32, SampleFormat::int32, SND_PCM_ACCESS_RW_NONINTERLEAVED},
        Form{SND_PCM_FORMAT_S24, SampleFormat::int24, SND_PCM_ACCESS_RW_INTERLEAVED},
        Form{SND_PCM_FORMAT_S24_3LE, SampleFormat::packed24, SND_PCM_ACCESS_RW_INTERLEAVED},
        Form{SND_PCM_FORMAT_S24_3LE, SampleFormat::packed24, SND_PCM_ACCESS_RW_NONINTERLEAVED},
        Form{SND_PCM_FORMAT_S16, SampleFormat::int16, SND_PCM_ACCESS_RW_INTERLEAVED},
        Form{SND_PCM_FORMAT_S16, SampleFormat::int16, SND_PCM_ACCESS_RW_NONINTERLEAVED}));

TEST(AlsaStream, TakesTheFinestFormatThatTheHardwareHas) {
    renewFakeAlsa();
    fakeAlsa().cards[0].devices[0].formats = {SND_PCM_FORMAT_S16, SND_PCM_FORMAT_S24_3LE};
    std::unique_ptr<AlsaPcm> pcm;
    ASSERT_EQ(AlsaPcm::open("hw:0,0", pcm), 0);
    ASSERT_EQ(pcm->configure({2, 48000}), 0);
    EXPECT_EQ(pcm->format(), SampleFormat::packed24);
}

TEST(AlsaStream, IsNotOpenedInAnotherShapeThanTheHardwares) {
    renewFakeAlsa();
    fakeAlsa().cards[0].devices[0].channels = 8;
    std::unique_ptr<Stream> stream;
    EXPECT_LT(openAlsaStream(
                  "hw:0,0", {2, 48000}, [](AudioBufferList*) {}, stream),
              0);
    EXPECT_LT(openAlsaStream(
                  "hw:0,0", {8, 22050}, [](AudioBufferList*) {}, stream),
              0);
    EXPECT_LT(openAlsaStream(
                  "hw:0,1", {8, 48000}, [](AudioBufferList*) {}, stream),
              0);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(fakeAlsa().opened, 0);
}

}
}
