#include "engine/voices.h"

#include "base/Error.h"
#include "tests/engine/ScriptedEnvironment.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/waveFiles.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

namespace tallyvox {
namespace {

using Samples = std::vector<float>;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// The voices folder of this test, and what comes of its files.
class LoadVoice : public testing::Test {
protected:
    LoadVoice() {
        std::filesystem::create_directory(file("").parent_path());
        scriptedResources = folder.path();
        scriptedArguments = {"/nowhere/tallyvox"};
        writeWave(file("1.wav"), Samples{1}, 48000);
    }

    std::filesystem::path file(std::string_view name) const {
        return folder.path() / "Voices" / name;
    }

    static std::optional<Error> failure(std::int64_t number) {
        try {
            loadVoice(number, 48000);
        } catch (const Error& error) {
            return error;
        }
        return std::nullopt;
    }

    /// The voice of number 7 at the file's own rate, from a file of that form.
    Samples through(WaveForm form, const Samples& samples) const {
        writeWave(file("7.wav"), samples, 48000, 1, form);
        return loadVoice(7, 48000);
    }

    TemporaryFolder folder;
};

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void expectNear(const Samples& voice, const Samples& expected, float tolerance) {
    ASSERT_EQ(voice.size(), expected.size());
    for (std::size_t i = 0; i < voice.size(); ++i)
        EXPECT_NEAR(voice[i], expected[i], tolerance) << i;
}

TEST_F(LoadVoice, NamesTheFileByThePlainNumber) {
    writeWave(file("7.wav"), Samples{0.5F, 0.25F}, 48000);
    writeWave(file("07.wav"), Samples{0.5F, -0.5F}, 48000);
    writeWave(file("12.wav"), Samples{0.5F, 0.125F, 0}, 48000);
    EXPECT_EQ(loadVoice(7, 48000), (Samples{1, 0.5F}));
    EXPECT_EQ(loadVoice(12, 48000), (Samples{1, 0.25F, 0}));
    EXPECT_THAT(failure(0)->what(), HasSubstr("/Voices/0.wav"));
    EXPECT_THAT(failure(-1)->what(), HasSubstr("/Voices/-1.wav"));
}

TEST_F(LoadVoice, ReadsTheFileAfreshEveryTime) {
    EXPECT_EQ(loadVoice(1, 48000), Samples{1});
    writeWave(file("1.wav"), Samples{0.5F, -1}, 48000);
    EXPECT_EQ(loadVoice(1, 48000), (Samples{0.5F, -1}));
}

TEST_F(LoadVoice, ReadsEveryForm) {
    const Samples source = sine(400, 0.5F);
    const Samples expected = sine(400, 1.0F);
    expectNear(through(WaveForm::pcm16, source), expected, 1e-4F);
    expectNear(through(WaveForm::pcm24, source), expected, 1e-6F);
    expectNear(through(WaveForm::float32, source), expected, 1e-6F);
    expectNear(through(WaveForm::pcm8, source), expected, 2e-2F);
}

TEST_F(LoadVoice, FloatsBeyondFullScaleAreNotCut) {
    EXPECT_EQ(through(WaveForm::float32, {4, -2, 1}), (Samples{1, -0.5F, 0.25F}));
}

TEST_F(LoadVoice, HearsTheFirstChannelOnly) {
    Samples interleaved;
    for (const float sample : sine(100, 0.25F)) {
        interleaved.push_back(sample);
        interleaved.push_back(0.9F);
    }
    writeWave(file("7.wav"), interleaved, 48000, 2);
    expectNear(loadVoice(7, 48000), sine(100, 1.0F), 1e-6F);
}

TEST_F(LoadVoice, ConvertsFromEveryRate) {
    writeWave(file("2.wav"), sine(9600, 0.5F), 96000, 1, WaveForm::pcm24);
    writeWave(file("3.wav"), sine(1100, 0.5F), 11025, 1, WaveForm::pcm16);
    const Samples halved = loadVoice(2, 48000);
    const Samples source = loadVoice(2, 96000);
    ASSERT_EQ(halved.size(), 4800U);
    for (std::size_t i = 0; i < halved.size(); ++i)
        EXPECT_EQ(halved[i], source[2 * i]);
    EXPECT_EQ(loadVoice(3, 48000).size(), 1100U * 48000U / 11025U);
    EXPECT_EQ(loadVoice(3, 44100).size(), 4400U);
    EXPECT_EQ(loadVoice(3, 0), Samples{});
}

TEST_F(LoadVoice, AllVoicesAreTheVoicesOfTheirNumbers) {
    for (std::int64_t number = 1; number <= 40; ++number)
        writeWave(file(std::to_string(number) + ".wav"), sine(997 * number % 20'000, 0.5F), 44100);
    const VoiceStore store = loadVoices(40, 192000);
    ASSERT_EQ(store.voices().size(), 40U);
    std::int64_t number = 0;
    for (const auto& voice : store.voices())
        EXPECT_THAT(voice, testing::ElementsAreArray(loadVoice(++number, 192000)));
    EXPECT_TRUE(loadVoices(0, 192000).voices().empty());
}

TEST_F(LoadVoice, OfAllVoicesTheFirstThatFailsIsTheOneNamed) {
    writeWave(file("2.wav"), Samples{1}, 48000);
    writeBytes(file("4.wav"), "");
    try {
        loadVoices(4, 48000);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ENOENT);
        EXPECT_THAT(error.what(), HasSubstr("/Voices/3.wav"));
    }
}

TEST_F(LoadVoice, ARecordingWithoutFramesIsAnEmptyVoice) {
    EXPECT_EQ(through(WaveForm::pcm16, {}), Samples{});
}

TEST_F(LoadVoice, ALongRecordingComesWhole) {
    Samples source = sine(100'003, 0.5F);
    source.back() = 1.0F;
    EXPECT_EQ(through(WaveForm::float32, source), source);
    for (const float sample : sine(100'003, 0.5F))
        source.push_back(sample);
    writeWave(file("7.wav"), source, 48000, 2);
    EXPECT_EQ(loadVoice(7, 48000).size(), 100'003U);
}

TEST_F(LoadVoice, AMissingFileIsNamedWithItsReason) {
    const auto error = failure(5);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), "POSIX");
    EXPECT_EQ(error->code(), ENOENT);
    EXPECT_EQ(std::string(error->what()),
              "Cannot open \"" + file("5.wav").string() + "\": No such file or directory.");
}

TEST_F(LoadVoice, WhatIsNoRecordingIsNamedWithItsReason) {
    writeBytes(file("2.wav"), "");
    writeBytes(file("3.wav"), "This is a letter, and nothing to listen to.\n");
    writeBytes(file("4.wav"), "RIFF\x24\x08\x00\x00WAVEfmt ");
    std::filesystem::create_directory(file("6.wav"));
    ASSERT_EQ(::mkfifo(file("8.wav").c_str(), 0600), 0);
    for (const int number : {2, 3, 4, 6, 8}) {
        const auto error = failure(number);
        ASSERT_TRUE(error) << number;
        EXPECT_NE(error->domain(), "Voice") << number;
        EXPECT_NE(error->code(), 0) << number;
        EXPECT_THAT(error->what(), AllOf(HasSubstr("Cannot open \"" + file("").string() +
                                                   std::to_string(number) + ".wav\": "),
                                         Not(HasSubstr("\n")), Not(HasSubstr(".."))));
    }
}

TEST_F(LoadVoice, ARecordingCutShortIsHeardAsFarAsItGoes) {
    writeWave(file("7.wav"), sine(1000, 0.5F), 48000, 1, WaveForm::pcm16);
    writeBytes(file("7.wav"), std::string_view(contents(file("7.wav"))).substr(0, 44 + 800));
    expectNear(loadVoice(7, 48000), sine(400, 1.0F), 1e-4F);
}

TEST_F(LoadVoice, ALinkToNothingIsAMissingFile) {
    std::filesystem::create_symlink("nothing.wav", file("7.wav"));
    EXPECT_EQ(failure(7)->code(), ENOENT);
}

}
}
