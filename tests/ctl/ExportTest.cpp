#include "tests/ctl/Announced.h"
#include "tests/ctl/Companion.h"
#include "tests/support/waveFiles.h"

#include <gmock/gmock.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> operator+(std::vector<std::string> all, std::vector<std::string> more) {
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

/// Exports and expects the very samples of `announced`.
void expectExported(const std::vector<std::string>& arguments, const Announced& announced,
                    std::int64_t frames) {
    const Companion companion;
    const auto file = companion.file("x.wav");
    const Outcome outcome =
        companion.run(std::vector<std::string>{
                          "export", file, "--channels", std::to_string(announced.channels),
                          "--rate", std::to_string(static_cast<std::int64_t>(announced.rate))} +
                      arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_THAT(outcome.err, IsEmpty());
    const Wave wave = readWave(file);
    EXPECT_EQ(wave.channels, announced.channels);
    EXPECT_EQ(wave.rate, static_cast<std::int64_t>(announced.rate));
    ASSERT_EQ(static_cast<std::int64_t>(wave.interleaved.size()), frames * announced.channels);
    EXPECT_TRUE(wave.interleaved == announced.samples(frames));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(companion.folder()), {}), 1);
}

TEST(Export, AllTogetherEqualsAnIndependentComputation) {
    const Announced announced{128, 96000, -24, 0.2, false, 1, 128};
    expectExported({"--all", "--gap", "0.2"}, announced, announced.cycle());
}

TEST(Export, InTurnEqualsAnIndependentComputation) {
    expectExported({"--all", "--gap", "0.2", "--sequential", "--seconds", "0.55"},
                   {128, 96000, -24, 0.2, true, 1, 128}, 52800);
}

TEST(Export, ARoundInTurnIsACycleForEachChannel) {
    const Announced announced{6, 44100, -6, 0.3, true, 3, 5};
    expectExported({"--first", "3", "--last", "5", "--sequential", "--gap", "0.3", "--db", "-6",
                    "--rounds", "2"},
                   announced, std::int64_t{6} * announced.cycle());
}

TEST(Export, ASoloSpeaksAlone) {
    const Announced announced{4, 48000, -24, 0.7, false, 1, 4, 2};
    expectExported({"--solo", "2"}, announced, announced.cycle());
}

TEST(Export, NumbersAreDecimalHoweverTheyAreSpelled) {
    const Companion companion;
    const auto file = companion.file("x.wav");
    const Outcome outcome =
        companion.run({"export", file, "--channels", "010", "--rate", "08000.0"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const Wave wave = readWave(file);
    EXPECT_EQ(wave.channels, 10);
    EXPECT_EQ(wave.rate, 8000);
}

TEST(Export, ChannelsWithoutAVoiceAreSilent) {
    const Announced announced{200, 48000, -24, 0.2, false, 1, 128};
    expectExported({"--all", "--gap", "0.2"}, announced, announced.cycle());
}

TEST(Export, IsWhatAnOutputIsGiven) {
    const Companion companion;
    const std::vector<std::string> choices{"--last", "3", "--sequential", "--gap", "0.2"};
    EXPECT_EQ(
        companion.run(std::vector<std::string>{"play", "--seconds", "0.5"} + choices).exitCode, 0);
    const auto file = companion.file("x.wav");
    EXPECT_EQ(companion
                  .run(std::vector<std::string>{"export", file, "--channels", "8", "--rate",
                                                "48000", "--seconds", "2"} +
                       choices)
                  .exitCode,
              0);
    const auto played = readWave(companion.record()).interleaved;
    const auto exported = readWave(file).interleaved;
    EXPECT_GT(played.size(), 0U);
    EXPECT_TRUE(std::equal(played.begin(),
                           played.begin() + std::min(std::ssize(played), std::ssize(exported)),
                           exported.begin()));
}

TEST(Export, IntegerFormatsAreRoundedToNearest) {
    const Companion companion;
    for (const auto& [format, scale] : {std::pair{"pcm24", 0x1p23F}, std::pair{"pcm16", 0x1p15F}}) {
        const auto file = companion.file(format);
        EXPECT_EQ(companion
                      .run({"export", file, "--channels", "3", "--rate", "48000", "--db", "-6",
                            "--format", format})
                      .exitCode,
                  0);
        std::vector<float> expected = Announced{3, 48000, -6, 0.7, false, 1, 3}.samples(
            Announced{3, 48000, -6, 0.7, false, 1, 3}.cycle());
        for (float& sample : expected)
            sample = std::nearbyint(sample * scale) / scale;
        EXPECT_TRUE(readWave(file).interleaved == expected) << format;
    }
}

/// Expects the file of `channel` in `folder`, of 10 to 99 channels, to hold that channel of `all`.
void expectChannel(const std::filesystem::path& folder, std::int64_t channel,
                   const std::vector<float>& all, std::int64_t channels) {
    const std::string name = (channel < 10 ? "0" : "") + std::to_string(channel) + ".wav";
    const Wave wave = readWave(folder / name);
    EXPECT_EQ(wave.channels, 1);
    std::vector<float> expected;
    for (auto sample = channel - 1; sample < std::ssize(all); sample += channels)
        expected.push_back(all[static_cast<std::size_t>(sample)]);
    EXPECT_TRUE(wave.interleaved == expected) << name;
}

TEST(Export, SplitWritesAMonoFileAChannel) {
    const Companion companion;
    const auto target = companion.file("parts");
    const Announced announced{12, 48000, -24, 0.2, false, 1, 8};
    const std::vector<std::string> arguments{"export", target,      "--split", "--channels",
                                             "12",     "--rate",    "48000",   "--gap",
                                             "0.2",    "--seconds", "0.4"};
    // A second time into the folder that is there now.
    for (int time = 0; time < 2; ++time) {
        const Outcome outcome = companion.run(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    }
    const auto all = announced.samples(19200);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(target), {}), 12);
    for (std::int64_t channel = 1; channel <= 12; ++channel)
        expectChannel(target, channel, all, 12);
}

TEST(Export, SplitFilesOfSeveralBlocksHoldTheirChannel) {
    const Companion companion;
    const auto target = companion.file("parts");
    const Announced announced{64, 192000, -24, 0.2, false, 1, 64};
    constexpr std::int64_t frames = 144000;
    const Outcome outcome =
        companion.run({"export", target, "--split", "--channels", "64", "--rate", "192000", "--all",
                       "--gap", "0.2", "--seconds", "0.75"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto all = announced.samples(frames);
    for (const std::int64_t channel : {1, 9, 64})
        expectChannel(target, channel, all, 64);
}

TEST(Export, OnAFileSystemInMemoryTheBytesAreTheSame) {
    if (access("/dev/shm", W_OK) != 0)
        GTEST_SKIP() << "no file system in memory";
    const Companion companion;
    const std::filesystem::path inMemory = "/dev/shm/tallyvox-" + std::to_string(getpid()) + ".wav";
    for (const auto& target : {companion.file("x.wav"), inMemory})
        EXPECT_EQ(companion
                      .run({"export", target, "--channels", "7", "--rate", "48000", "--format",
                            "pcm24", "--seconds", "2.2"})
                      .exitCode,
                  0);
    EXPECT_EQ(run({.line = {"cmp", companion.file("x.wav"), inMemory}}).exitCode, 0);
    EXPECT_GT(std::filesystem::file_size(inMemory), 2U << 20U);
    std::filesystem::remove(inMemory);
}

/// `command` within `limits`, as the shell's ulimit takes them.
Command limited(Command command, const std::string& limits) {
    command.line =
        std::vector<std::string>{"sh", "-c", "ulimit " + limits + "; exec \"$@\"", "sh"} +
        command.line;
    return command;
}

TEST(Export, SplitOpensAsManyFilesAsThereAreChannels) {
    const Companion companion;
    const auto target = companion.file("parts");
    const Command command = companion.command(
        {"export", target, "--split", "--channels", "100", "--rate", "8000", "--seconds", "0.1"});
    const Outcome refused = run(limited(command, "-n 64"));
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err,
              "tallyvoxctl: 100 files have to be open at once, and the system does not allow as "
              "many; 'ulimit -Hn' tells its limit.\n");
    EXPECT_THAT(refused.out, IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(companion.folder()));

    const Outcome written = run(limited(command, "-S -n 64"));
    EXPECT_EQ(written.exitCode, 0) << written.err;
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(target), {}), 100);
}

TEST(Export, SoxAndFfprobeSeeTheSame) {
    const Companion companion;
    const auto file = companion.file("x.wav");
    ASSERT_EQ(companion
                  .run({"export", file, "--channels", "128", "--rate", "96000", "--all",
                        "--seconds", "0.25"})
                  .exitCode,
              0);
    const std::string tools = "command -v soxi >/dev/null && command -v ffprobe >/dev/null";
    if (run({.line = {"sh", "-c", tools}}).exitCode != 0)
        GTEST_SKIP() << "sox and ffprobe are not installed";
    const std::string ask = "soxi -c \"$0\" && soxi -r \"$0\" && soxi -s \"$0\"";
    EXPECT_EQ(run({.line = {"sh", "-c", ask, file}}).out, "128\n96000\n24000\n");
    EXPECT_EQ(run({.line = {"ffprobe", "-v", "error", "-show_entries",
                            "stream=codec_name,sample_rate,channels,duration", "-of",
                            "default=noprint_wrappers=1:nokey=1", file}})
                  .out,
              "pcm_f32le\n96000\n128\n0.250000\n");
}

TEST(Export, ReplacesAnOlderFileOnlyWhenItIsComplete) {
    const Companion companion;
    const auto file = companion.file("x.wav");
    writeBytes(file, "old");
    Process process(companion.command(
        {"export", file, "--channels", "128", "--rate", "96000", "--seconds", "100000"}));
    const auto begun = [&] {
        return std::distance(std::filesystem::directory_iterator(companion.folder()), {}) == 2;
    };
    while (process.runs() && !begun())
        usleep(1000);
    process.send(SIGINT);
    const Outcome outcome = process.end();
    EXPECT_EQ(outcome.exitCode, 130);
    EXPECT_THAT(outcome.err, HasSubstr("was not written"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(companion.folder()), {}), 1);
    EXPECT_EQ(std::filesystem::file_size(file), 3U);

    EXPECT_EQ(companion.run({"export", file, "--channels", "1", "--rate", "8000"}).exitCode, 0);
    EXPECT_EQ(readWave(file).channels, 1);
}

TEST(Export, ALinkStaysALink) {
    const Companion companion;
    std::filesystem::create_symlink("real.wav", companion.file("link.wav"));
    EXPECT_EQ(
        companion.run({"export", companion.file("link.wav"), "--channels", "1", "--rate", "8000"})
            .exitCode,
        0);
    EXPECT_TRUE(std::filesystem::is_symlink(companion.file("link.wav")));
    EXPECT_EQ(readWave(companion.file("real.wav")).rate, 8000);
}

TEST(Export, ADiskThatFillsUpIsAClearErrorAndLeavesNothing) {
    const Companion companion;
    Command command = companion.command({"export", companion.file("x.wav"), "--channels", "64",
                                         "--rate", "48000", "--seconds", "60"});
    const Outcome large = run(limited(command, "-f 200"));
    EXPECT_EQ(large.exitCode, 1);
    EXPECT_EQ(large.err, "tallyvoxctl: Cannot write \"" + companion.file("x.wav").string() +
                             "\": File too large.\n");
    EXPECT_THAT(large.out, IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(companion.folder()));

    const std::string mount = "mount -t tmpfs -o size=1m tmpfs \"$0\" && ";
    const auto disk = companion.folder().string();
    const std::vector<std::string> apart{"unshare", "--map-root-user", "--mount", "sh", "-c"};
    if (run({.line = apart + std::vector<std::string>{mount + "true", disk}}).exitCode != 0)
        GTEST_SKIP() << "no file system of limited size can be had here";
    command.line =
        apart +
        std::vector<std::string>{mount + "\"$@\"; code=$?; ls -A \"$0\"; exit $code", disk} +
        companion
            .command({"export", companion.file("x.wav"), "--channels", "64", "--rate", "48000",
                      "--seconds", "60"})
            .line;
    const Outcome full = run(command);
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_EQ(full.err, "tallyvoxctl: Cannot write \"" + companion.file("x.wav").string() +
                            "\": No space left on device.\n");
    EXPECT_THAT(full.out, IsEmpty());
}

TEST(Export, WhereNothingCanBeWrittenIsAClearError) {
    const Companion companion;
    for (const std::string target :
         {"/proc/x.wav", "/nowhere/at/all/x.wav", "/dev/null", "/tmp", "/proc/self/parts"}) {
        for (const bool split : {false, true}) {
            std::vector<std::string> line{"export", target, "--channels", "2", "--rate", "8000"};
            if (split && target == "/tmp")
                continue;
            if (split)
                line.push_back("--split");
            const Outcome outcome = companion.run(line);
            EXPECT_EQ(outcome.exitCode, 1) << target;
            EXPECT_THAT(outcome.err, HasSubstr("tallyvoxctl: Cannot write \"" + target + "\": "));
            EXPECT_THAT(outcome.out, IsEmpty());
        }
    }
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(Export, AChannelBeyondTheFileIsRefused) {
    const Companion companion;
    const Outcome outcome = companion.run(
        {"export", companion.file("x.wav"), "--channels", "4", "--rate", "8000", "--last", "5"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("the output has 4 channels"));
    EXPECT_TRUE(std::filesystem::is_empty(companion.folder()));
}

TEST(Export, OnATerminalShowsABar) {
    const Companion companion;
    Command command = companion.command({"export", companion.file("x.wav"), "--channels", "128",
                                         "--rate", "48000", "--seconds", "0.2"});
    command.terminal = true;
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("\r["));
    EXPECT_THAT(outcome.out, HasSubstr("] "));
}

}
}
