#include "tests/ctl/Announced.h"
#include "tests/ctl/Companion.h"
#include "tests/support/waveFiles.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

namespace tallyvox {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// What the output got is exactly what `announced` gives, and at least one I/O cycle of it.
void expectRecorded(const Companion& companion, const Announced& announced) {
    const Wave wave = readWave(companion.record());
    ASSERT_EQ(wave.channels, announced.channels);
    const auto frames = static_cast<std::int64_t>(wave.interleaved.size()) / wave.channels;
    EXPECT_GT(frames, 0);
    EXPECT_TRUE(wave.interleaved == announced.samples(frames));
}

TEST(Play, ShowsTheStatusLinesOfTheWindow) {
    const Companion companion;
    const Outcome outcome = companion.run({"play", "--seconds", "0.5"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out,
              "8 channels at once, each with peaks at -24.0 dBFS: their sum stays below -5.9 dBFS "
              "with all peaks aligned, about -15.0 dBFS uncorrelated.\n"
              "Preparing spoken numbers…\n"
              "Playing to Virtual 8 channels · 48000 Hz\n"
              "Stopped.\n");
    EXPECT_THAT(outcome.err, IsEmpty());
}

TEST(Play, WithoutChoicesSpeaksAsTheWindowDoes) {
    const Companion companion;
    EXPECT_EQ(companion.run({"play", "--seconds", "0.5"}, "virtual:12@48000").exitCode, 0);
    expectRecorded(companion, {12, 48000, -24, 0.7, false, 1, 8});
}

TEST(Play, TakesEveryChoice) {
    const Companion companion;
    const Outcome outcome =
        companion.run({"play", "--output", "64", "--first", "5", "--last", "20", "--db", "-30.5",
                       "--gap", "0.2", "--sequential", "--seconds", "0.6"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("One channel at a time, peaks at -30.5 dBFS."));
    expectRecorded(companion, {64, 44100, -30.5, 0.2, true, 5, 20});
}

TEST(Play, SoloSpeaksAlone) {
    const Companion companion;
    EXPECT_EQ(companion.run({"play", "--solo", "7", "--seconds", "0.5"}).exitCode, 0);
    expectRecorded(companion, {8, 48000, -24, 0.7, false, 1, 8, 7});
}

TEST(Play, AllReachesTheLastChannelThatHasAVoice) {
    const Companion companion;
    EXPECT_EQ(companion.run({"play", "--all", "--seconds", "0.5"}, "virtual:200@48000").exitCode,
              0);
    expectRecorded(companion, {200, 48000, -24, 0.7, false, 1, 128});
}

TEST(Play, EndsAfterTheLastRound) {
    const Companion companion;
    const Outcome outcome =
        companion.run({"play", "--rounds", "2", "--last", "2", "--sequential", "--gap", "0.2"});
    EXPECT_EQ(outcome.exitCode, 0);
    const Announced announced{8, 48000, -24, 0.2, true, 1, 2};
    EXPECT_GE(std::ssize(readWave(companion.record()).interleaved), announced.cycle() * 4 * 8);
    expectRecorded(companion, announced);
}

TEST(Play, EveryRoundIsHeardThoughTheOutputFellBehind) {
    const Companion companion;
    Process process(companion.command(
        {"play", "--rounds", "3", "--last", "2", "--sequential", "--gap", "0.2"}));
    ASSERT_TRUE(process.shows("Playing to"));
    // Longer than all that is left to play.
    process.send(SIGSTOP);
    std::this_thread::sleep_for(std::chrono::seconds(2));
    process.send(SIGCONT);
    const Outcome outcome = process.end();
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const Announced announced{8, 48000, -24, 0.2, true, 1, 2};
    EXPECT_GE(std::ssize(readWave(companion.record()).interleaved), announced.cycle() * 6 * 8);
    expectRecorded(companion, announced);
}

class Interrupted : public testing::TestWithParam<int> {};

TEST_P(Interrupted, StopsInOrderAndAtOnce) {
    const Companion companion;
    Process process(companion.command({"play", "--all"}));
    ASSERT_TRUE(process.shows("Playing to"));
    // The header alone is shorter than this.
    while (process.runs() && std::filesystem::file_size(companion.record()) < 20000)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const auto before = std::chrono::steady_clock::now();
    process.send(GetParam());
    const Outcome outcome = process.end();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5));
    EXPECT_EQ(outcome.exitCode, 130);
    EXPECT_THAT(outcome.out, EndsWith("\nStopped.\n"));
    EXPECT_THAT(outcome.err, IsEmpty());
    // The output was closed in order: its recording is complete.
    expectRecorded(companion, {8, 48000, -24, 0.7, false, 1, 8});
}

INSTANTIATE_TEST_SUITE_P(By, Interrupted, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(Play, FindsTheOutputByIdByNameAndByPartOfIt) {
    const Companion companion;
    for (const char* name : {"3", "Virtual 64 channels", "64", "64 CHAN"}) {
        const Outcome outcome = companion.run({"play", "--output", name, "--seconds", "0.01"});
        EXPECT_EQ(outcome.exitCode, 0) << name;
        EXPECT_THAT(outcome.out, HasSubstr("Playing to Virtual 64 channels · 44100 Hz\n"));
    }
}

struct Refusal {
    std::vector<std::string> arguments;
    std::string outputs;
    std::string says;
};

void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.says; }

class Refused : public testing::TestWithParam<Refusal> {};

TEST_P(Refused, IsAClearLineAndNoSound) {
    const Companion companion;
    std::vector<std::string> arguments{"play", "--seconds", "0.1"};
    arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    const Outcome outcome = companion.run(arguments, GetParam().outputs);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().says));
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(companion.record()));
}

INSTANTIATE_TEST_SUITE_P(
    ByTheMachine, Refused,
    testing::Values(
        Refusal{{"--output", "nothing"}, "virtual:8@48000", "There is no output \"nothing\"."},
        Refusal{{"--output", "Virtual"}, "virtual:8@48000,9@48000", "more than one output"},
        Refusal{{"--output", "8"}, "unreadable", "No output is there at all."},
        Refusal{{}, "unreadable", "Output unavailable. Start DVS, then refresh outputs."},
        Refusal{{"--last", "9"}, "virtual:8@48000", "the output has 8 channels"},
        Refusal{{"--first", "9"}, "virtual:8@48000", "the output has 8 channels"},
        Refusal{{"--solo", "9"}, "virtual:8@48000", "the output has 8 channels"}));

TEST(Play, AMissingRecordingIsNamed) {
    const Companion companion;
    std::filesystem::remove(companion.voice(5));
    const Outcome outcome = companion.run({"play", "--seconds", "0.1"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("5.wav"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("Playing")));
}

TEST(Play, WithoutAReaderStillStopsInOrder) {
    const Companion companion;
    Command command = companion.command({"play", "--seconds", "0.5"});
    command.outClosed = true;
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, IsEmpty());
    expectRecorded(companion, {8, 48000, -24, 0.7, false, 1, 8});
}

TEST(Play, WithClosedStreamsStillPlaysAndStopsInOrder) {
    const Companion companion;
    for (const std::string closed : {">&-", "<&- >&- 2>&-"}) {
        Command command = companion.command({"play", "--seconds", "0.5"});
        const std::vector<std::string> shell{"sh", "-c", "exec \"$@\" " + closed, "sh"};
        command.line.insert(command.line.begin(), shell.begin(), shell.end());
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_EQ(outcome.err, closed == ">&-" ? "tallyvoxctl: Cannot write to standard output: "
                                                 "Bad file descriptor.\n"
                                               : "");
        expectRecorded(companion, {8, 48000, -24, 0.7, false, 1, 8});
    }
}

TEST(Play, OnATerminalTellsWhatIsHeard) {
    const Companion companion;
    Command command =
        companion.command({"play", "--sequential", "--first", "2", "--seconds", "0.5"});
    command.terminal = true;
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("\r0:00  round 1  channel 2  "));
    EXPECT_THAT(outcome.out, HasSubstr(" xruns\033[K"));
    EXPECT_THAT(outcome.out, EndsWith("\r\033[KStopped.\r\n"));
}

TEST(Play, OnADumbTerminalDrawsNothing) {
    const Companion companion;
    Command command = companion.command({"play", "--seconds", "0.5"});
    command.terminal = true;
    command.set["TERM"] = "dumb";
    EXPECT_THAT(run(command).out, Not(HasSubstr("round")));
}

}
}
