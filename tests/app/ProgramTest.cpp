// The program itself, with resources of the test's own beside it.

#include "tests/support/Process.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/waveFiles.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdint>

namespace tallyvox {
namespace {

using testing::HasSubstr;

/// Two outputs without any server.
constexpr auto outputs = "virtual:8@44100,64@48000";

constexpr auto pass =
    "PASS: 128 voices at 44.1/48/96 kHz; independent 8/64/128-channel mapping; interleaved and "
    "split buffers; disabled channels; sequential mode; gain; repeat gaps and callback "
    "boundaries.\n";

class Program : public testing::Test {
protected:
    Program() {
        std::filesystem::create_directories(folder.path() / "bin");
        std::filesystem::create_directories(voices());
        std::filesystem::copy_file(TALLYVOX_PROGRAM, program());
    }

    std::filesystem::path program() const { return folder.path() / "bin" / "tallyvox"; }
    std::filesystem::path voices() const { return folder.path() / "share" / "tallyvox" / "Voices"; }
    std::filesystem::path recording(std::int64_t number) const {
        return voices() / (std::to_string(number) + ".wav");
    }

    void recordAll() const {
        for (std::int64_t number = 1; number <= 128; ++number)
            writeWave(recording(number), std::vector<float>(20, 0.5F), 48000, 1, WaveForm::pcm16);
    }

    Command command(std::vector<std::string> words, const std::string& audio = outputs) const {
        words.insert(words.begin(), program().string());
        return {.line = words,
                .set = {{"TALLYVOX_AUDIO", audio}, {"XDG_RUNTIME_DIR", folder.path().string()}},
                .unset = {"PIPEWIRE_REMOTE", "PIPEWIRE_RUNTIME_DIR", "DISPLAY", "WAYLAND_DISPLAY",
                          "QT_QPA_PLATFORM"}};
    }
    Outcome outcome(std::vector<std::string> words, const std::string& audio = outputs) const {
        return run(command(std::move(words), audio));
    }

    void expectSelfTestPasses(const std::vector<std::string>& words) const {
        const Outcome ended = outcome(words);
        EXPECT_EQ(ended.exitCode, 0);
        EXPECT_EQ(ended.out, pass);
        EXPECT_EQ(ended.err, "");
    }

    Outcome failedSelfTest() const {
        Outcome ended = outcome({"--self-test"});
        EXPECT_EQ(ended.signal, SIGABRT);
        EXPECT_EQ(ended.out, "");
        return ended;
    }

    TemporaryFolder folder;
};

TEST_F(Program, PassesItsSelfTest) {
    recordAll();
    expectSelfTestPasses({"--self-test"});
}

TEST(ShippedProgram, PassesItsSelfTestWithTheShippedRecordings) {
    const Outcome ended = run({.line = {TALLYVOX_PROGRAM, "--self-test"}});
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.out, pass);
    EXPECT_EQ(ended.err, "");
}

TEST_F(Program, TestsItselfOnlyWhereBothSwitchesAreGiven) {
    recordAll();
    expectSelfTestPasses({"--self-test", "--devices"});
    expectSelfTestPasses({"--devices", "anything", "--self-test"});
}

TEST_F(Program, NamesARecordingThatIsMissing) {
    recordAll();
    std::filesystem::remove(recording(128));
    EXPECT_EQ(failedSelfTest().err, "tallyvox: Cannot open \"" + recording(128).string() +
                                        "\": No such file or directory.\n");
}

TEST_F(Program, NamesARecordingThatIsNone) {
    recordAll();
    writeBytes(recording(64), "");
    EXPECT_THAT(failedSelfTest().err,
                HasSubstr("tallyvox: Cannot open \"" + recording(64).string() + "\": "));
}

TEST_F(Program, StopsInSilenceAtARecordingWithoutFrames) {
    recordAll();
    writeWave(recording(2), {}, 48000);
    EXPECT_EQ(failedSelfTest().err, "");
}

TEST_F(Program, StopsInSilenceAtARecordingThatIsTooQuiet) {
    recordAll();
    writeWave(recording(2), std::vector<float>(20, 0.0005F), 48000);
    EXPECT_EQ(failedSelfTest().err, "");
}

TEST_F(Program, StopsInSilenceAtARecordingThatIsNoSound) {
    recordAll();
    std::vector<float> samples(20, 0.5F);
    samples[7] = std::numeric_limits<float>::quiet_NaN();
    writeWave(recording(2), samples, 48000);
    EXPECT_EQ(failedSelfTest().err, "");
}

TEST_F(Program, FindsItsRecordingsInABundleBesideIt) {
    recordAll();
    const auto bundle = folder.path() / "bin" / "Tallyvox.app" / "Contents" / "Resources";
    std::filesystem::create_directories(bundle);
    std::filesystem::rename(voices(), bundle / "Voices");
    expectSelfTestPasses({"--self-test"});
}

TEST_F(Program, NamesTheLastPlaceWhereItLookedForRecordings) {
    EXPECT_THAT(
        failedSelfTest().err,
        HasSubstr((folder.path() / "bin/Tallyvox.app/Contents/Resources/Voices/1.wav").string()));
}

TEST_F(Program, TakesItsOwnNameForASwitch) {
    recordAll();
    const Outcome ended =
        run({.line = {"bash", "-c", "exec -a --self-test " + program().string()}});
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.out, pass);
}

TEST_F(Program, ListsItsOutputsALineEach) {
    const Outcome ended =
        outcome({"--devices"}, "virtual:8@44100,64@48000,128@100000,2@200000,1@47952.5,3@0");
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.out, "2: Virtual 8 channels | 8 outputs | 44100.0 Hz\n"
                         "3: Virtual 64 channels | 64 outputs | 48000.0 Hz\n"
                         "4: Virtual 128 channels | 128 outputs | 100000.0 Hz\n"
                         "5: Virtual 2 channels | 2 outputs | 200000.0 Hz\n"
                         "6: Virtual 1 channels | 1 outputs | 47952.5 Hz\n"
                         "7: Virtual 3 channels | 3 outputs | 0.0 Hz\n");
}

TEST_F(Program, ListsNothingWhereThereIsNoOutput) {
    const Outcome ended = outcome({"--devices"}, "pipewire");
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.out, "");
}

TEST_F(Program, FailsWhereItsResultsCannotBeWritten) {
    recordAll();
    for (const char* word : {"--self-test", "--devices"}) {
        Command full = command({word});
        full.out = "/dev/full";
        const Outcome ended = run(full);
        EXPECT_EQ(ended.exitCode, 1) << word;
        EXPECT_EQ(ended.err, "tallyvox: Cannot write to standard output.\n") << word;
    }
}

TEST_F(Program, WantsADisplayForItsWindowWhereItIsGivenAnyOtherWord) {
    for (const char* word :
         {"--help", "-h", "--Devices", "-devices", "--devices=1", "--self-tes", "-platform"}) {
        const Outcome ended = outcome({word, "offscreen"});
        EXPECT_EQ(ended.exitCode, 1) << word;
        EXPECT_EQ(ended.out, "") << word;
        EXPECT_THAT(ended.err, HasSubstr("no display")) << word;
    }
}

TEST_F(Program, WantsADisplayThatAnswers) {
    Command window = command({});
    std::erase(window.unset, "DISPLAY");
    window.set["DISPLAY"] = ":4711";
    const Outcome ended = run(window);
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.signal, 0);
    EXPECT_THAT(ended.err, HasSubstr("no display"));
}

}
}
