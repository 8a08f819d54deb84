#include "tests/support/rounds.h"

#include "tests/support/Resources.h"
#include "tests/support/TestSignal.h"
#include "tests/support/environmentNumber.h"
#include "tests/support/eventually.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

using namespace std::chrono_literals;

constexpr int kWarmUp = 3;
/// What an allocator may keep.
constexpr std::int64_t kSlackKibibytes = 4096;

void playOnce(const TestSignal& signal, const OpenStream& open) {
    const auto before = signal.calls();
    std::unique_ptr<Stream> stream;
    ASSERT_EQ(open(signal.callback(), stream), 0);
    ASSERT_EQ(stream->start(), 0);
    const auto end = std::chrono::steady_clock::now() + 200ms;
    ASSERT_TRUE(eventually([&] {
        return std::chrono::steady_clock::now() > end && signal.calls() >= before + 2;
    })) << "it does not play";
    stream->stop();
    const auto stopped = signal.calls();
    std::this_thread::sleep_for(25ms);
    stream.reset();
    std::this_thread::sleep_for(25ms);
    ASSERT_EQ(signal.calls(), stopped) << "a call came after the stop";
}

}

int rounds(int otherwise) { return environmentNumber("TALLYVOX_ROUNDS", otherwise); }

void expectLevelRounds(int count, const OpenStream& open) {
    const TestSignal signal;
    const Resources idle = Resources::held();
    // A server takes a moment to claim back what it shared.
    const auto play = [&] {
        playOnce(signal, open);
        ASSERT_TRUE(eventually([&] { return Resources::held().descriptors == idle.descriptors; }))
            << Resources::held().descriptors << " descriptors, " << idle.descriptors
            << " before the first start";
    };
    for (int warmUp = 0; warmUp < kWarmUp && !testing::Test::HasFatalFailure(); ++warmUp)
        play();
    const Resources before = Resources::held();
    for (int round = 0; round < count && !testing::Test::HasFatalFailure(); ++round) {
        SCOPED_TRACE(round);
        play();
    }
    const Resources after = Resources::held();
    EXPECT_EQ(after.threads, before.threads);
    // The sanitizers keep what is freed, and look for leaks themselves.
    if (TALLYVOX_SANITIZED == 0) {
        EXPECT_LT(after.kibibytes, before.kibibytes + kSlackKibibytes);
    }
    testing::Test::RecordProperty("rounds", count);
    testing::Test::RecordProperty("kibibytes",
                                  static_cast<int>(after.kibibytes - before.kibibytes));
}

}
