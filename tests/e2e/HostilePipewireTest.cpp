// A PipeWire server that hangs up, falls silent or talks nonsense from any byte of a conversation
// on: the program says so in a line, or lists nothing, and ends as it should.

#include "tests/e2e/HostileWire.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/environmentNumber.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

using Worst = HostileWire::Worst;

class HostilePipewireTest : public testing::TestWithParam<Worst> {
protected:
    void SetUp() override {
        if (!PipewireServer::available())
            GTEST_SKIP() << "pipewire is not installed";
        server_ = std::make_unique<PipewireServer>(
            std::vector<PipewireServer::Sink>{{"Left", 2, 48000}, {"Right", 8, 44100}});
        socket_ = std::filesystem::path(std::getenv("PIPEWIRE_RUNTIME_DIR")) / "pipewire-0";
    }

    static Outcome ask(const HostileWire& wire, const std::vector<std::string>& words) {
        std::vector<std::string> line{TALLYVOX_COMPANION};
        line.insert(line.end(), words.begin(), words.end());
        return run(
            {.line = line,
             .set = {{"TALLYVOX_AUDIO", "pipewire"}, {"PIPEWIRE_RUNTIME_DIR", wire.folder()}}});
    }

    /// Bytes that a good server says to a program that is told `words`.
    std::int64_t conversation(const std::vector<std::string>& words) const {
        const HostileWire wire(socket_, Worst::die, std::numeric_limits<std::int64_t>::max());
        const Outcome outcome = ask(wire, words);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_THAT(outcome.out, testing::HasSubstr("Left"));
        return wire.most();
    }

    /// Tells a program `words` before a server that turns hostile at `trials` places of the
    /// conversation, TALLYVOX_ROUNDS times as many where that is set, and expects an end with a
    /// list, or with a line that says why not.
    void survive(const std::vector<std::string>& words, std::int64_t trials) const {
        trials *= environmentNumber("TALLYVOX_ROUNDS", 1);
        const std::int64_t length = conversation(words);
        ASSERT_GT(length, 1000);
        for (std::int64_t trial = 0; trial < trials; ++trial) {
            const std::int64_t after = (trial + 1) * length / (trials + 1) + trial % 4;
            SCOPED_TRACE("after " + std::to_string(after) + " bytes");
            const HostileWire wire(socket_, GetParam(), after);
            const Outcome outcome = ask(wire, words);
            EXPECT_EQ(outcome.signal, 0);
            EXPECT_THAT(outcome.exitCode, testing::AnyOf(0, 1));
            EXPECT_TRUE(outcome.exitCode == 0 || !outcome.err.empty());
        }
    }

private:
    std::unique_ptr<PipewireServer> server_;
    std::filesystem::path socket_;
};

TEST_P(HostilePipewireTest, IsSurvivedByAList) {
    survive({"list"}, GetParam() == Worst::hush ? 2 : 6);
}

/// The same where a stream plays.
class PlayedPipewireTest : public HostilePipewireTest {};

TEST_P(PlayedPipewireTest, IsSurvivedByAnAnnouncement) {
    survive({"play", "--output", "Left", "--all", "--seconds", "0.2"},
            GetParam() == Worst::die ? 3 : 1);
}

std::string nameOf(const testing::TestParamInfo<Worst>& worst) {
    constexpr std::array names{"HangsUp", "FallsSilent", "TurnsBits", "TalksNonsense",
                               "KeepsDescriptors"};
    return names.at(static_cast<std::size_t>(worst.param));
}

/// What a server says of the memory that it shares with a stream its library believes: one that
/// lies then is met at length only, where TALLYVOX_ROUNDS is set.
std::vector<Worst> whilePlaying() {
    std::vector<Worst> worst{Worst::die, Worst::hush, Worst::strip};
    if (environmentNumber("TALLYVOX_ROUNDS", 0) > 0)
        worst.insert(worst.end(), {Worst::flip, Worst::garble});
    return worst;
}

INSTANTIATE_TEST_SUITE_P(Server, HostilePipewireTest,
                         testing::Values(Worst::die, Worst::hush, Worst::flip, Worst::garble,
                                         Worst::strip),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Server, PlayedPipewireTest, testing::ValuesIn(whilePlaying()), nameOf);

}
}
