#include "engine/voices.h"

#include "tests/engine/ScriptedEnvironment.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/death.h"
#include "tests/support/waveFiles.h"

namespace tallyvox {
namespace {

class VoiceRoot : public testing::Test {
protected:
    VoiceRoot() {
        scriptedResources = folder.path();
        scriptedArguments = {"/opt/tools/tallyvox", "--devices"};
    }
    TemporaryFolder folder;
};

constexpr auto besideTheProgram = "/opt/tools/Tallyvox.app/Contents/Resources/Voices";

TEST_F(VoiceRoot, IsInTheResourcesWhereNumberOneIsThere) {
    std::filesystem::create_directory(folder.path() / "Voices");
    writeBytes(folder.path() / "Voices" / "1.wav", "");
    EXPECT_EQ(voiceRoot(), folder.path() / "Voices");
}

TEST_F(VoiceRoot, LiesBesideTheProgramWhereNumberOneIsMissing) {
    std::filesystem::create_directory(folder.path() / "Voices");
    writeBytes(folder.path() / "Voices" / "2.wav", "");
    EXPECT_EQ(voiceRoot(), besideTheProgram);
}

TEST_F(VoiceRoot, LiesBesideTheProgramWhereThereAreNoResources) {
    scriptedResources.reset();
    EXPECT_EQ(voiceRoot(), besideTheProgram);
}

TEST_F(VoiceRoot, OfAProgramFoundByNameLiesInTheWorkingFolder) {
    scriptedResources.reset();
    scriptedArguments = {"tallyvox"};
    EXPECT_EQ(voiceRoot(), "Tallyvox.app/Contents/Resources/Voices");
}

TEST_F(VoiceRoot, WithoutAnyArgumentStopsTheProcess) {
    scriptedResources.reset();
    scriptedArguments.clear();
    EXPECT_SILENT_STOP(voiceRoot());
}

TEST_F(VoiceRoot, InTheResourcesNeedsNoArgument) {
    std::filesystem::create_directory(folder.path() / "Voices");
    writeBytes(folder.path() / "Voices" / "1.wav", "");
    scriptedArguments.clear();
    EXPECT_EQ(voiceRoot(), folder.path() / "Voices");
}

}
}
