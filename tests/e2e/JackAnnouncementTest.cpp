// The whole road of an announcement, from the command line to the samples that a device of a real
// jackd is given, alone and beside a PipeWire server.

#include "tests/e2e/Announcement.h"
#include "tests/support/JackServer.h"
#include "tests/support/PipewireServer.h"
#include "tests/support/Recogniser.h"
#include "tests/support/eventually.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <sstream>

namespace tallyvox {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Command command(std::vector<std::string> line, const std::string& audio) {
    return {.line = std::move(line), .set = {{"TALLYVOX_AUDIO", audio}}};
}

/// The names that the program lists, in its order.
std::vector<std::string> listed(const std::string& audio) {
    const Outcome outcome = run(command({TALLYVOX_PROGRAM, "--devices"}, audio));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    std::vector<std::string> names;
    std::istringstream lines(outcome.out);
    for (std::string line; std::getline(lines, line);) {
        const auto begin = line.find(": ") + 2;
        names.push_back(line.substr(begin, line.find(" | ") - begin));
    }
    return names;
}

class JackAnnouncementTest : public testing::Test {
protected:
    void SetUp() override {
        if (!JackServer::available())
            GTEST_SKIP() << "jackd is not installed";
    }

    /// What a device of the choice's channels got, while `companion play` announced on it.
    Capture capture(const Announcement::Choice& choice, const Announcement& expected,
                    double cycles) {
        const JackServer server({.rate = static_cast<int>(choice.rate), .period = 2048});
        JackOutput ear("Stage", static_cast<int>(choice.channels), file(),
                       static_cast<int>(cycles * static_cast<double>(expected.cycle())));
        std::vector<std::string> line{TALLYVOX_COMPANION,
                                      "play",
                                      "--output",
                                      "Stage",
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
        Process companion(command(line, "jack"));
        EXPECT_TRUE(ear.captured()) << companion.out() << companion.err();
        companion.send(SIGINT);
        const Outcome outcome = companion.end();
        EXPECT_EQ(outcome.exitCode, 130) << outcome.out;
        EXPECT_EQ(outcome.err, "");
        return {file(), choice.channels};
    }

    std::filesystem::path file() const { return folder.path() / "capture"; }

    TemporaryFolder folder;
};

TEST_F(JackAnnouncementTest, EachOf128ChannelsSpeaksItsOwnNumber) {
    const Announcement::Choice choice{128, 48000, -6, 0.2, false, 1, 128};
    const Announcement expected(choice);
    const Capture heard = capture(choice, expected, 1.05);
    EXPECT_EQ(heard.deviation(expected), "");

    Recogniser recogniser;
    for (const std::int64_t channel : {1, 2, 7, 13, 19, 30, 40, 64, 77, 99, 100, 128})
        EXPECT_EQ(recogniser.number(heard.channel(channel, expected.cycle()), choice.rate),
                  channel);
}

TEST_F(JackAnnouncementTest, ChannelsBeyond128StaySilent) {
    const Announcement::Choice choice{200, 96000, -20, 0.2, false, 1, 128};
    const Announcement expected(choice);
    EXPECT_EQ(capture(choice, expected, 1.05).deviation(expected), "");
}

TEST_F(JackAnnouncementTest, ChannelsTakeTurns) {
    const Announcement::Choice choice{64, 44100, -6, 0.2, true, 62, 64};
    const Announcement expected(choice);
    EXPECT_EQ(capture(choice, expected, 3.1).deviation(expected), "");
}

/// Every width and rate together and in turn where TALLYVOX_EVERY_SHAPE is set, else one of them.
std::vector<Announcement::Choice> shapes() {
    if (std::getenv("TALLYVOX_EVERY_SHAPE") == nullptr)
        return {{8, 44100, -6, 0.2, false, 1, 8}};
    std::vector<Announcement::Choice> all;
    for (const std::int64_t channels : {8, 64, 128, 200})
        for (const double rate : {44100.0, 48000.0, 96000.0})
            for (const bool sequential : {false, true}) {
                const auto last = std::min<std::int64_t>(channels, 128);
                all.push_back(
                    {channels, rate, -6, 0.2, sequential, sequential ? last - 1 : 1, last});
            }
    return all;
}

TEST_F(JackAnnouncementTest, EveryShapeIsExact) {
    for (const auto& choice : shapes()) {
        const Announcement expected(choice);
        EXPECT_EQ(capture(choice, expected, choice.sequential ? 2.05 : 1.05).deviation(expected),
                  "")
            << choice.channels << " channels at " << choice.rate;
    }
}

TEST_F(JackAnnouncementTest, TheEndOfTheServerEndsIt) {
    JackServer server({.playback = 8});
    Process companion(command({TALLYVOX_COMPANION, "play"}, "jack"));
    ASSERT_TRUE(companion.shows("Playing to system"));
    server.process().send(SIGKILL);
    const Outcome outcome = companion.end();
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("Output changed or disconnected."));
}

TEST_F(JackAnnouncementTest, EveryServerThatAnswersIsListedOnce) {
    if (!PipewireServer::available())
        GTEST_SKIP() << "pipewire is not installed";
    PipewireServer pipewire({{"Balcony", 8, 48000}, {"Cellar", 2, 48000}});
    auto jack = std::make_unique<JackServer>(JackServer::Setup{.playback = 4});
    EXPECT_THAT(listed(""), ElementsAre("Balcony", "Cellar", "system"));
    EXPECT_THAT(listed("pipewire"), ElementsAre("Balcony", "Cellar"));
    EXPECT_THAT(listed("jack"), ElementsAre("system"));
    for (const std::string output : {"Cellar", "system"}) {
        const Outcome outcome =
            run(command({TALLYVOX_COMPANION, "play", "--output", output, "--seconds", "0.5"}, ""));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    }
    jack.reset();
    EXPECT_THAT(listed(""), ElementsAre("Balcony", "Cellar"));
}

/// PipeWire's emulation of JACK takes the place of libjack in the programs that it starts.
class PipewiresEmulation : public testing::Test {
protected:
    void SetUp() override {
        if (!PipewireServer::available() || !std::filesystem::exists(emulation))
            GTEST_SKIP() << "PipeWire's JACK emulation is not installed";
        server.emplace(std::vector<PipewireServer::Sink>{{"Balcony", 64, 48000}});
    }

    Command emulated(std::vector<std::string> line, const std::string& audio) const {
        auto result = command(std::move(line), audio);
        result.set["LD_LIBRARY_PATH"] = emulation.parent_path();
        return result;
    }

    const std::filesystem::path emulation = TALLYVOX_JACK_EMULATION;
    std::optional<PipewireServer> server;
};

TEST_F(PipewiresEmulation, IsServedOnlyWhenAskedFor) {
    const auto once = run(emulated({TALLYVOX_PROGRAM, "--devices"}, ""));
    EXPECT_THAT(once.out, HasSubstr("Balcony | 64 outputs | 48000.0 Hz\n"));
    EXPECT_EQ(std::count(once.out.begin(), once.out.end(), '\n'), 1) << once.out;
    const auto asked = run(emulated({TALLYVOX_PROGRAM, "--devices"}, "jack"));
    EXPECT_THAT(asked.out, HasSubstr("Balcony | 64 outputs | 48000.0 Hz\n"));
    EXPECT_NE(asked.out, once.out) << "the ids are not of different layers";
}

TEST_F(PipewiresEmulation, IsExact) {
    const Announcement::Choice choice{64, 48000, -6, 0.2, false, 1, 64};
    const Announcement expected(choice);
    const TemporaryFolder folder;
    const auto file = folder.path() / "capture";
    bool late = true;
    for (int attempt = 0; late && attempt < 4; ++attempt) {
        auto ear = PipewireOutput::monitor(
            "Balcony", 64, file,
            static_cast<std::int64_t>(1.05 * static_cast<double>(expected.cycle())));
        Process companion(emulated(
            {TALLYVOX_COMPANION, "play", "--last", "64", "--db", "-6", "--gap", "0.2"}, "jack"));
        ASSERT_TRUE(ear.captured()) << companion.out() << companion.err();
        companion.send(SIGINT);
        const Outcome outcome = companion.end();
        EXPECT_EQ(outcome.exitCode, 130) << outcome.out;
        EXPECT_EQ(outcome.err, "");
        late = ear.late();
    }
    EXPECT_FALSE(late) << "the machine does not keep up";
    EXPECT_EQ(Capture(file, 64).deviation(expected), "");
}

}
}
