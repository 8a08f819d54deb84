#include "tests/ctl/Companion.h"
#include "tests/support/JackServer.h"
#include "tests/support/PipewireServer.h"

#include <gmock/gmock.h>

#include <csignal>
#include <optional>

namespace tallyvox {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

class OnPipewire : public testing::Test {
protected:
    void SetUp() override {
        if (!PipewireServer::available())
            GTEST_SKIP() << "pipewire is not installed";
        server_.emplace(std::vector<PipewireServer::Sink>{{"Stage", 8, 48000}});
    }

    Process play(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments{"play", "--output", "Stage"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Process(companion_.command(arguments, "pipewire"));
    }

    Companion companion_;
    std::optional<PipewireServer> server_;
};

TEST_F(OnPipewire, ListsWithTheLayer) {
    const Outcome list = companion_.run({"list"}, "pipewire");
    EXPECT_THAT(list.out,
                MatchesRegex("[0-9]+: Stage \\| 8 outputs \\| 48000\\.0 Hz \\| pipewire\n"));
}

TEST_F(OnPipewire, TheDoctorFindsTheServerAndItsOutput) {
    const Outcome doctor = companion_.run({"doctor"}, "pipewire");
    EXPECT_EQ(doctor.exitCode, 0);
    EXPECT_THAT(doctor.out, MatchesRegex(".*\npipewire [0-9.]+ answers\\. .*"));
    EXPECT_THAT(doctor.out,
                HasSubstr(": Stage | 8 outputs | 48000.0 Hz | pipewire: ready to start."));
}

TEST_F(OnPipewire, AnOutputThatGoesEndsThePlayWithItsMessage) {
    Process process = play();
    ASSERT_TRUE(process.shows("Playing to Stage · 48000 Hz"));
    server_->remove("Stage");
    const Outcome outcome = process.end();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "Output changed or disconnected. Refresh outputs before restarting.\n");
}

TEST_F(OnPipewire, AServerThatIsKilledEndsThePlayWithTheMessage) {
    Process process = play();
    ASSERT_TRUE(process.shows("Playing to Stage · 48000 Hz"));
    server_->kill();
    const Outcome outcome = process.end();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "Output changed or disconnected. Refresh outputs before restarting.\n");
}

TEST_F(OnPipewire, AnInterruptionStopsInOrder) {
    Process process = play({"--sequential"});
    ASSERT_TRUE(process.shows("Playing to Stage · 48000 Hz"));
    process.send(SIGINT);
    const Outcome outcome = process.end();
    EXPECT_EQ(outcome.exitCode, 130);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, EndsWith("Stopped.\n"));
}

TEST(OnJack, ListsPlaysAndEndsWithTheServer) {
    if (!JackServer::available())
        GTEST_SKIP() << "jackd is not installed";
    const Companion companion;
    JackServer server({.playback = 8});
    EXPECT_THAT(companion.run({"list"}, "jack").out,
                MatchesRegex("[0-9]+: system \\| 8 outputs \\| 48000\\.0 Hz \\| jack\n"));
    EXPECT_THAT(companion.run({"doctor"}, "jack").out,
                MatchesRegex(".*\njack [0-9.]+ answers\\. .*system.*: ready to start\\..*"));
    Process process(companion.command({"play"}, "jack"));
    ASSERT_TRUE(process.shows("Playing to system · 48000 Hz"));
    server.stop();
    const Outcome outcome = process.end();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "Output changed or disconnected. Refresh outputs before restarting.\n");
}

}
}
