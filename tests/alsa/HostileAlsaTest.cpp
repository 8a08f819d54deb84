// A libasound that lies or fails at any one of its calls: every list is a list, every operation
// answers, nothing crashes and nothing is left open.

#include "platform/linux/alsa/AlsaLayer.h"
#include "platform/linux/alsa/AlsaPcm.h"
#include "tests/alsa/FakeAlsa.h"
#include "tests/support/TestSignal.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <thread>

namespace tallyvox {
namespace {

/// Waits a moment for `holds`, which may never come true.
template<typename Condition>
void await(Condition holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(2);
    while (!holds() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}

/// All that a program does with the layer, for a moment.
void useEverything() {
    const auto layer = makeAlsaLayer();
    TestSignal signal;
    const auto listed = layer->devices();
    ASSERT_TRUE(listed.has_value());
    for (const auto& device : *listed) {
        EXPECT_GT(device.rate, 0.0);
        EXPECT_FALSE(device.buffers.empty());
        EXPECT_LE(device.buffers.size(), std::size_t{AlsaPcm::kMostChannels});
        std::unique_ptr<Stream> stream;
        if (layer->open(device.id, signal.callback(), stream) != 0) {
            EXPECT_EQ(stream, nullptr);
            continue;
        }
        ASSERT_NE(stream, nullptr);
        const auto before = signal.calls();
        if (stream->start() == 0)
            await([&] { return signal.calls() > before + 2; });
        stream->stop();
        const auto after = signal.calls();
        stream->stop();
        EXPECT_EQ(signal.calls(), after);
    }
}

void renew() {
    renewFakeAlsa();
    fakeAlsa().cards[0] = {"PCH", "Built-in", "Built-in at 0xf000", {{0, {.name = "Analog"}}}};
    fakeAlsa().cards[2] = {"USB",
                           "Interface",
                           "Interface at usb-1",
                           {{0, {.name = "Planes", .access = SND_PCM_ACCESS_RW_NONINTERLEAVED}}}};
}

class HostileAlsaTest : public testing::TestWithParam<long> {};

TEST_P(HostileAlsaTest, IsSurvivedAtEveryCall) {
    // The calls up to the first write come in a fixed order; what follows is met by name below.
    constexpr int kCalls = 110;
    for (int hostile = 1; hostile <= kCalls; ++hostile) {
        SCOPED_TRACE(hostile);
        renew();
        fakeAlsa().script = [hostile](std::string_view, int number) -> std::optional<long> {
            return number == hostile ? std::optional(GetParam()) : std::nullopt;
        };
        useEverything();
        ASSERT_EQ(fakeAlsa().opened, 0);
    }
}

TEST_P(HostileAlsaTest, IsSurvivedWhereItNeverAnswersOtherwise) {
    for (const std::string_view hostile : {"snd_card_next",
                                           "snd_ctl_open",
                                           "snd_ctl_card_info",
                                           "snd_ctl_card_info_get_name",
                                           "snd_ctl_card_info_get_id",
                                           "snd_ctl_pcm_next_device",
                                           "snd_ctl_pcm_info",
                                           "snd_pcm_info_get_name",
                                           "snd_pcm_open",
                                           "snd_pcm_hw_params_any",
                                           "snd_pcm_hw_params_set_access",
                                           "snd_pcm_hw_params_set_format",
                                           "snd_pcm_hw_params_test_rate",
                                           "snd_pcm_hw_params_get_rate_max",
                                           "snd_pcm_hw_params_get_channels_max",
                                           "snd_pcm_hw_params_get_period_size",
                                           "snd_pcm_hw_params_get_buffer_size",
                                           "snd_pcm_hw_params",
                                           "snd_pcm_prepare",
                                           "snd_pcm_writei",
                                           "snd_pcm_writen",
                                           "snd_pcm_wait",
                                           "snd_pcm_resume",
                                           "snd_pcm_drop"}) {
        SCOPED_TRACE(hostile);
        renew();
        fakeAlsa().script = [hostile](std::string_view call, int) -> std::optional<long> {
            return call == hostile ? std::optional(GetParam()) : std::nullopt;
        };
        useEverything();
        ASSERT_EQ(fakeAlsa().opened, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Answers, HostileAlsaTest,
                         testing::Values(-EIO, -EPIPE, -EAGAIN, 0, INT_MAX));

}
}
