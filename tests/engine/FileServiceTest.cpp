#include "engine/AudioFile.h"

#include "base/Error.h"
#include "engine/voices.h"
#include "tests/engine/ScriptedEnvironment.h"
#include "tests/support/death.h"

#include <functional>
#include <new>

namespace tallyvox {
namespace {

/// The next file's answers.
struct Script {
    double rate = 48000;
    std::int64_t length = 3;
    std::function<std::optional<std::vector<std::vector<float>>>()> read;
    std::filesystem::path opened{};
} script;

}

struct AudioFile::Handle {};

AudioFile::AudioFile(const std::filesystem::path& path) { script.opened = path; }
AudioFile::~AudioFile() { delete handle_; }
double AudioFile::rate() const noexcept { return script.rate; }
std::int64_t AudioFile::length() const noexcept { return script.length; }
bool AudioFile::read(std::vector<std::vector<float>>& channels) {
    const auto answer = script.read();
    channels = answer.value_or(channels);
    return answer.has_value();
}

namespace {

class FileService : public testing::Test {
protected:
    FileService() {
        script = {};
        scriptedResources.reset();
        scriptedArguments = {"/opt/tallyvox"};
    }

    static Error failure() {
        try {
            loadVoice(7, 48000);
        } catch (const Error& error) {
            return error;
        }
        return {"", 0};
    }
};

TEST_F(FileService, IsAskedForTheFileInTheVoiceRoot) {
    script.read = [] { return std::vector<std::vector<float>>{{1}}; };
    loadVoice(7, 48000);
    EXPECT_EQ(script.opened, voiceRoot() / "7.wav");
}

TEST_F(FileService, WithoutMemoryForTheSamplesIsVoiceErrorOne) {
    script.read = []() -> std::optional<std::vector<std::vector<float>>> {
        throw std::bad_alloc();
    };
    EXPECT_EQ(failure().domain(), "Voice");
    EXPECT_EQ(failure().code(), 1);
    EXPECT_STREQ(failure().what(), "Voice error 1");
}

TEST_F(FileService, WithoutMemoryForTheVoiceIsVoiceErrorOne) {
    script.read = [] { return std::vector<std::vector<float>>{{1, 1}}; };
    script.rate = 2e-14;
    EXPECT_EQ(failure().domain(), "Voice");
    EXPECT_EQ(failure().code(), 1);
}

TEST_F(FileService, WithoutFloatsIsVoiceErrorTwo) {
    script.read = [] { return std::nullopt; };
    EXPECT_EQ(failure().domain(), "Voice");
    EXPECT_EQ(failure().code(), 2);
    EXPECT_STREQ(failure().what(), "Voice error 2");
}

TEST_F(FileService, AReadErrorPassesUnchanged) {
    script.read = []() -> std::optional<std::vector<std::vector<float>>> {
        throw Error("Disk", 5, "The disk is gone.");
    };
    EXPECT_EQ(failure().domain(), "Disk");
    EXPECT_EQ(failure().code(), 5);
    EXPECT_STREQ(failure().what(), "The disk is gone.");
}

TEST_F(FileService, TheFramesActuallyReadCountNotTheStatedLength) {
    script.length = 1000;
    script.read = [] { return std::vector<std::vector<float>>{{1, 0.5F}, {9, 9}}; };
    EXPECT_EQ(loadVoice(7, 48000), (std::vector<float>{1, 0.5F}));
}

TEST_F(FileService, AStatedLengthBeyondThirtyTwoBitsStopsTheProcess) {
    script.read = [] { return std::vector<std::vector<float>>{{1}}; };
    script.length = 4294967295;
    EXPECT_EQ(loadVoice(7, 48000), std::vector<float>{1});
    script.length = 4294967296;
    EXPECT_SILENT_STOP(loadVoice(7, 48000));
    script.length = -1;
    EXPECT_SILENT_STOP(loadVoice(7, 48000));
}

}
}
