#include "tests/ctl/Companion.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(CommandLine, HelpNamesEveryVerbAndTheExitCodes) {
    const Outcome help = Companion().run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.err, IsEmpty());
    for (const char* word : {"list", "play", "export", "doctor", "130", "TALLYVOX_AUDIO"})
        EXPECT_THAT(help.out, HasSubstr(word));
}

TEST(CommandLine, EveryVerbExplainsItself) {
    const Companion companion;
    for (const char* verb : {"list", "play", "export", "doctor"}) {
        const Outcome help = companion.run({verb, "--help"});
        EXPECT_EQ(help.exitCode, 0) << verb;
        EXPECT_THAT(help.out, HasSubstr(std::string("tallyvoxctl ") + verb));
        EXPECT_THAT(help.err, IsEmpty());
        std::istringstream lines(help.out);
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(CommandLine, VersionIsTheProjects) {
    const Outcome version = Companion().run({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out, "tallyvoxctl " TALLYVOX_VERSION "\n");
}

TEST(CommandLine, HelpOnAFullDiskFails) {
    const Companion companion;
    Command command = companion.command({"--help"});
    command.out = "/dev/full";
    EXPECT_EQ(tallyvox::run(command).exitCode, 1);
}

struct BadLine {
    std::vector<std::string> arguments;
    std::string says;
};

void PrintTo(const BadLine& line, std::ostream* out) {
    for (const std::string& argument : line.arguments)
        *out << argument << ' ';
}

class UsageError : public testing::TestWithParam<BadLine> {};

TEST_P(UsageError, IsAClearLineAndNoSound) {
    const Companion companion;
    const Outcome outcome = companion.run(GetParam().arguments);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(outcome.err, StartsWith("tallyvoxctl: "));
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().says));
    EXPECT_TRUE(std::filesystem::is_empty(companion.folder()));
}

INSTANTIATE_TEST_SUITE_P(Verbs, UsageError,
                         testing::Values(BadLine{{}, "verb"}, BadLine{{"sing"}, "sing"},
                                         BadLine{{"list", "x"}, "x"},
                                         BadLine{{"list", "--loud"}, "--loud"},
                                         BadLine{{"list", "play"}, "play"},
                                         BadLine{{"doctor", "--db", "-20"}, "--db"}));

INSTANTIATE_TEST_SUITE_P(
    Play, UsageError,
    testing::Values(
        BadLine{{"play", "--first", "9", "--last", "3"}, "--last"},
        BadLine{{"play", "--first", "0"}, "--first"}, BadLine{{"play", "--first", "x"}, "--first"},
        BadLine{{"play", "--first", "1.5"}, "--first"},
        BadLine{{"play", "--last", "129"}, "--last"},
        BadLine{{"play", "--last", "99999999999999999999"}, "--last"},
        BadLine{{"play", "--last"}, "--last"}, BadLine{{"play", "--all", "--first", "2"}, "--all"},
        BadLine{{"play", "--all", "--last", "2"}, "--all"},
        BadLine{{"play", "--solo", "9", "--last", "8"}, "--solo"},
        BadLine{{"play", "--solo", "1", "--first", "2"}, "--solo"},
        BadLine{{"play", "--solo", "0"}, "--solo"},
        BadLine{{"play", "--solo", "2", "--sequential"}, "--solo"},
        BadLine{{"play", "--db", "5"}, "--db"}, BadLine{{"play", "--db", "-5.9"}, "--db"},
        BadLine{{"play", "--db", "-60.1"}, "--db"}, BadLine{{"play", "--db", "nan"}, "--db"},
        BadLine{{"play", "--db", ""}, "--db"}, BadLine{{"play", "--db", "-0x14"}, "--db"},
        BadLine{{"play", "--db", "-20dB"}, "--db"}, BadLine{{"play", "--gap", "0.1"}, "--gap"},
        BadLine{{"play", "--gap", "3.1"}, "--gap"}, BadLine{{"play", "--gap", "inf"}, "--gap"},
        BadLine{{"play", "--seconds", "0"}, "--seconds"},
        BadLine{{"play", "--seconds", "-1"}, "--seconds"},
        BadLine{{"play", "--rounds", "0"}, "--rounds"},
        BadLine{{"play", "--rounds", "2", "--seconds", "2"}, "--rounds"},
        BadLine{{"play", "--output"}, "--output"},
        BadLine{{"play", "--output", "", "--seconds", "0.1"}, "--output: the name is empty"}));

INSTANTIATE_TEST_SUITE_P(
    Export, UsageError,
    testing::Values(
        BadLine{{"export"}, "FILE"}, BadLine{{"export", "x.wav", "--rate", "48000"}, "--channels"},
        BadLine{{"export", "x.wav", "--channels", "8"}, "--rate"},
        BadLine{{"export", "x.wav", "--channels", "0", "--rate", "48000"}, "--channels"},
        BadLine{{"export", "x.wav", "--channels", "16384", "--rate", "48000"}, "--channels"},
        BadLine{{"export", "x.wav", "--channels", "8", "--rate", "0"}, "--rate"},
        BadLine{{"export", "x.wav", "--channels", "8", "--rate", "44100.5"}, "--rate"},
        BadLine{{"export", "x.wav", "--channels", "8", "--rate", "48000", "--format", "mp3"},
                "--format: mp3 not in {float,pcm16,pcm24}"},
        BadLine{{"export", "x.wav", "--channels", "8", "--rate", "48000", "--format", "1"},
                "--format: 1 not in {float,pcm16,pcm24}"}));

TEST(CommandLine, NoGuiLibraryIsLinked) {
    const Outcome libraries = run({.line = {"ldd", TALLYVOX_COMPANION}});
    ASSERT_EQ(libraries.exitCode, 0) << libraries.err;
    EXPECT_THAT(libraries.out, HasSubstr("libQt6Core"));
    for (const char* name : {"Qt6Gui", "Qt6Qml", "Qt6Quick", "Qt6Widgets", "libX11", "libwayland",
                             "libGL", "libEGL", "fontconfig"})
        EXPECT_THAT(libraries.out, Not(HasSubstr(name)));
}

}
}
