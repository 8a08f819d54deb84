// A JACK server that fails, lies or dies at any one call, or at every call of one name: every list
// is a list, every operation answers in time, nothing crashes and no client is left behind.

#include "platform/linux/jack/JackLayer.h"
#include "tests/jack/FakeJack.h"
#include "tests/support/TestSignal.h"
#include "tests/support/eventually.h"
#include "tests/support/survive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace tallyvox {
namespace {

using Answer = FakeJack::Answer;
using namespace std::chrono_literals;

/// All that a program does with the layer, for a moment.
void useEverything() {
    {
        const auto layer = makeJackLayer(JackServers::own);
        const TestSignal signal;
        for (const auto& device : layer->devices().value_or(std::vector<DeviceRecord>{})) {
            EXPECT_FALSE(device.buffers.empty());
            std::unique_ptr<Stream> stream;
            if (layer->open(device.id, signal.callback(), stream) != 0) {
                EXPECT_EQ(stream, nullptr);
                continue;
            }
            ASSERT_NE(stream, nullptr);
            for (int round = 0; round < 2; ++round) {
                const auto before = signal.calls();
                if (stream->start() == 0)
                    eventually([&] { return signal.calls() > before + 2; }, 5ms);
                stream->stop();
                const auto after = signal.calls();
                std::this_thread::sleep_for(1ms);
                EXPECT_EQ(signal.calls(), after);
            }
            layer->devices();
        }
    }
    EXPECT_TRUE(eventually([] {
        const std::lock_guard lock(fakeJack().mutex);
        return fakeJack().open == 0;
    })) << "a client is left behind";
}

/// At least as many calls as that makes of a good server.
constexpr int kCalls = 60;

class HostileJackTest : public testing::TestWithParam<Answer> {};

TEST(FakeJackTest, AGoodServerIsPlayedOn) {
    EXPECT_EQ(died([] {
                  const auto layer = makeJackLayer(JackServers::own);
                  const auto listed = layer->devices();
                  ASSERT_TRUE(listed);
                  ASSERT_EQ(listed->size(), 1U);
                  EXPECT_EQ(listed->front().buffers.size(), 2U);
                  const TestSignal signal;
                  std::unique_ptr<Stream> stream;
                  ASSERT_EQ(layer->open(listed->front().id, signal.callback(), stream), 0);
                  ASSERT_EQ(stream->start(), 0);
                  EXPECT_TRUE(eventually([&] { return signal.calls() > 3; }));
              }),
              "");
}

TEST(FakeJackTest, NoCallIsLeftOut) {
    EXPECT_EQ(died([] {
                  useEverything();
                  EXPECT_LE(fakeJack().calls, kCalls);
                  EXPECT_GE(fakeJack().calls, kCalls / 2);
              }),
              "");
}

TEST(FakeJackTest, ADeathIsNoticed) {
    EXPECT_EQ(died([] { std::abort(); }), "signal 6");
    EXPECT_EQ(died([] { std::_Exit(3); }), "exit code 3");
    EXPECT_EQ(died([] { std::this_thread::sleep_for(1h); }, 0s), "it hangs");
}

TEST_P(HostileJackTest, IsSurvivedAtEveryCall) {
    std::vector<std::string> deaths;
    for (int hostile = 1; hostile <= kCalls; ++hostile) {
        fakeJack().script = [hostile](std::string_view, int number) {
            return number == hostile ? GetParam() : Answer::own;
        };
        if (const auto how = died(useEverything); !how.empty())
            deaths.push_back("call " + std::to_string(hostile) + ": " + how);
    }
    EXPECT_THAT(deaths, testing::IsEmpty());
}

TEST_P(HostileJackTest, IsSurvivedWhereItNeverAnswersOtherwise) {
    std::vector<std::string> deaths;
    for (const std::string_view hostile : {"cycle",
                                           "jack_activate",
                                           "jack_client_close",
                                           "jack_client_open",
                                           "jack_connect",
                                           "jack_deactivate",
                                           "jack_get_client_name",
                                           "jack_get_ports",
                                           "jack_get_sample_rate",
                                           "jack_get_uuid_for_client_name",
                                           "jack_get_version_string",
                                           "jack_port_connected",
                                           "jack_port_get_buffer",
                                           "jack_port_name",
                                           "jack_port_register",
                                           "jack_port_uuid",
                                           "jack_remove_properties",
                                           "jack_set_process_callback",
                                           "jack_set_property",
                                           "jack_set_sample_rate_callback",
                                           "jack_set_xrun_callback"}) {
        fakeJack().script = [hostile](std::string_view call, int) {
            return call == hostile ? GetParam() : Answer::own;
        };
        if (const auto how = died(useEverything); !how.empty())
            deaths.push_back(std::string(hostile) + ": " + how);
    }
    EXPECT_THAT(deaths, testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Answers, HostileJackTest,
                         testing::Values(Answer::fail, Answer::lie, Answer::die),
                         [](const auto& answer) {
                             return answer.param == Answer::fail  ? "Failures"
                                    : answer.param == Answer::lie ? "Lies"
                                                                  : "Deaths";
                         });

}
}
