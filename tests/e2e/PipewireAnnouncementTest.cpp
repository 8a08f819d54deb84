// The whole road of an announcement, from the command line to the samples that a device of a real
// server is given.

#include "tests/e2e/Announcement.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/Recogniser.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <sstream>

namespace tallyvox {
namespace {

class PipewireAnnouncementTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!PipewireServer::available())
            GTEST_SKIP() << "pipewire is not installed";
        server = std::make_unique<PipewireServer>(std::vector<PipewireServer::Sink>{
            {"Stage left | 1: all", 8, 44100}, {"Balcony", 64, 48000}});
    }

    static Command command(std::vector<std::string> line) {
        return {.line = std::move(line), .set = {{"TALLYVOX_AUDIO", "pipewire"}}};
    }

    /// Plays `choice` on the output `name` until `ear` has what it wants, and interrupts it.
    static void play(const std::string& name, const Announcement::Choice& choice,
                     PipewireOutput& ear) {
        std::vector<std::string> line{TALLYVOX_COMPANION,
                                      "play",
                                      "--output",
                                      name,
                                      "--first",
                                      std::to_string(choice.first),
                                      "--last",
                                      std::to_string(choice.last),
                                      "--db",
                                      std::to_string(choice.db),
                                      "--gap",
                                      std::to_string(choice.gap)};
        if (choice.sequential)
            line.emplace_back("--sequential");
        Process companion(command(line));
        EXPECT_TRUE(ear.captured());
        companion.send(SIGINT);
        const Outcome outcome = companion.end();
        EXPECT_EQ(outcome.exitCode, 130) << outcome.out << outcome.err;
        EXPECT_EQ(outcome.err, "");
    }

    /// What `makeEar` captures while `choice` plays on the output `name`. A capture with gaps is
    /// tried again, for a machine may be busy.
    template<class MakeEar>
    Capture capture(const std::string& name, const Announcement::Choice& choice,
                    MakeEar makeEar) const {
        bool late = true;
        for (int attempt = 0; late && attempt < 4; ++attempt) {
            PipewireOutput ear = makeEar();
            play(name, choice, ear);
            late = ear.late();
        }
        return {file(), choice.channels};
    }

    /// Plays `choice` on a wide device of another program and captures `cycles` repetitions.
    Capture captureWide(const Announcement::Choice& choice, const Announcement& expected,
                        double cycles) const {
        return capture("Wide", choice, [&] {
            return PipewireOutput("Wide", static_cast<int>(choice.channels),
                                  static_cast<int>(choice.rate), file(), frames(expected, cycles));
        });
    }

    /// The same on one of the server's own.
    Capture captureOwn(const std::string& name, const Announcement::Choice& choice,
                       const Announcement& expected, double cycles) const {
        return capture(name, choice, [&] {
            return PipewireOutput::monitor(name, static_cast<int>(choice.channels), file(),
                                           frames(expected, cycles));
        });
    }

    static std::int64_t frames(const Announcement& expected, double cycles) {
        return static_cast<std::int64_t>(cycles * static_cast<double>(expected.cycle()));
    }

    std::filesystem::path file() const { return folder.path() / "capture"; }

    TemporaryFolder folder;
    std::unique_ptr<PipewireServer> server;
};

TEST_F(PipewireAnnouncementTest, TheOutputsArePrintedInTheServersOrder) {
    const PipewireOutput wide("Wide", 128, 96000);
    const std::string nodes = run({.line = {"pw-cli", "ls", "Node"}}).out;
    const auto id = [&](const std::string& name) {
        // Of each object the serial comes first.
        std::istringstream lines(nodes);
        std::string serial;
        for (std::string line; std::getline(lines, line);) {
            const auto value = line.substr(std::min(line.find('"'), line.size() - 1) + 1);
            if (line.find("object.serial") != std::string::npos)
                serial = value;
            if (line.find("node.name = \"" + name + '"') != std::string::npos)
                return std::to_string(0x40000000U + std::stoul(serial));
        }
        return std::string("none");
    };
    const Outcome outcome = run(command({TALLYVOX_PROGRAM, "--devices"}));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, id("Stage left | 1: all") +
                               ": Stage left | 1: all | 8 outputs | 44100.0 Hz\n" + id("Balcony") +
                               ": Balcony | 64 outputs | 48000.0 Hz\n" + id("Wide") +
                               ": Wide | 128 outputs | 96000.0 Hz\n");
}

TEST_F(PipewireAnnouncementTest, WithoutAServerNothingIsPrinted) {
    server->kill();
    const Outcome outcome = run(command({TALLYVOX_PROGRAM, "--devices"}));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(PipewireAnnouncementTest, EachOf128ChannelsSpeaksItsOwnNumber) {
    const Announcement::Choice choice{128, 96000, -6, 0.2, false, 1, 128};
    const Announcement expected(choice);
    const Capture capture = captureWide(choice, expected, 1.05);
    EXPECT_EQ(capture.deviation(expected), "");

    Recogniser recogniser;
    for (const std::int64_t channel : {1, 2, 13, 30, 64, 100, 128})
        EXPECT_EQ(recogniser.number(capture.channel(channel, expected.cycle()), choice.rate),
                  channel);
}

TEST_F(PipewireAnnouncementTest, TheLastOf128ChannelsTakeTurns) {
    const Announcement::Choice choice{128, 48000, -20, 0.2, true, 127, 128};
    const Announcement expected(choice);
    EXPECT_EQ(captureWide(choice, expected, 2.05).deviation(expected), "");
}

TEST_F(PipewireAnnouncementTest, ThreeOfEightChannelsTakeTurns) {
    const Announcement::Choice choice{8, 44100, -6, 0.2, true, 6, 8};
    const Announcement expected(choice);
    EXPECT_EQ(captureOwn("Stage left | 1: all", choice, expected, 4.2).deviation(expected), "");
}

TEST_F(PipewireAnnouncementTest, ARangeLeavesTheOthersSilent) {
    const Announcement::Choice choice{64, 48000, -6, 0.2, false, 5, 8};
    const Announcement expected(choice);
    EXPECT_EQ(captureOwn("Balcony", choice, expected, 1.2).deviation(expected), "");
}

TEST_F(PipewireAnnouncementTest, AnOutputThatVanishesEndsIt) {
    Process companion(command({TALLYVOX_COMPANION, "play", "--output", "Balcony"}));
    ASSERT_TRUE(companion.shows("Playing to Balcony"));
    server->remove("Balcony");
    const Outcome outcome = companion.end();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, ::testing::HasSubstr("Output changed or disconnected."));
}

TEST_F(PipewireAnnouncementTest, ARateForcedByAnotherProgramEndsIt) {
    Process companion(command({TALLYVOX_COMPANION, "play", "--output", "Balcony"}));
    ASSERT_TRUE(companion.shows("Playing to Balcony \u00B7 48000 Hz"));
    server->forceRate(96000);
    const Outcome outcome = companion.end();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "Output changed or disconnected. Refresh outputs before restarting.\n");
    Process again(command({TALLYVOX_COMPANION, "play", "--output", "Balcony"}));
    EXPECT_TRUE(again.shows("Playing to Balcony \u00B7 96000 Hz"));
    again.send(SIGINT);
    EXPECT_EQ(again.end().exitCode, 130);
}

}
}
