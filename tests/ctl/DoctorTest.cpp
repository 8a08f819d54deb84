#include "tests/ctl/Companion.h"
#include "tests/support/waveFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

using testing::HasSubstr;

TEST(Doctor, FindsNothingWrongWhereAnAnnouncementCanBeStarted) {
    const Companion companion;
    const Outcome outcome = companion.run({"doctor"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    EXPECT_THAT(outcome.out, HasSubstr("tallyvoxctl " TALLYVOX_VERSION "\n"));
    EXPECT_THAT(outcome.out, HasSubstr("128 of 128 are sound"));
    EXPECT_THAT(outcome.out, HasSubstr(companion.voice(1).parent_path().string()));
    EXPECT_THAT(outcome.out, HasSubstr("48000.0 Hz | virtual: ready to start.\n"));
    EXPECT_THAT(outcome.out, HasSubstr("real-time priority"));
    EXPECT_THAT(outcome.out, HasSubstr("An announcement can be started.\n"));
    EXPECT_TRUE(std::filesystem::is_empty(companion.folder()));
}

TEST(Doctor, NamesEveryRecordingThatCannotBeAnnounced) {
    const Companion companion;
    std::filesystem::remove(companion.voice(7));
    writeBytes(companion.voice(8), "no sound");
    writeWave(companion.voice(9), {}, 22050);
    writeWave(companion.voice(10), std::vector<float>(100, 0.0F), 22050);
    const Outcome outcome = companion.run({"doctor"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, HasSubstr("124 of 128 are sound"));
    EXPECT_THAT(outcome.out, HasSubstr("7.wav"));
    EXPECT_THAT(outcome.out, HasSubstr("8.wav"));
    EXPECT_THAT(outcome.out, HasSubstr("9.wav is empty."));
    EXPECT_THAT(outcome.out, HasSubstr("10.wav is silent."));
    EXPECT_THAT(outcome.out, HasSubstr("An announcement cannot be started"));
}

TEST(Doctor, JudgesARecordingByAllItsSamples) {
    const Companion companion;
    // Half the rate and half the samples would miss the loud ones, or the one that is no number.
    std::vector<float> loudBetween(960, 0.01F);
    loudBetween[481] = -0.8F;
    writeWave(companion.voice(3), loudBetween, 96000);
    const Outcome sound = companion.run({"doctor"});
    EXPECT_EQ(sound.exitCode, 0) << sound.out;
    EXPECT_THAT(sound.out, HasSubstr("128 of 128 are sound"));

    std::vector<float> brokenBetween = loudBetween;
    brokenBetween[701] = std::numeric_limits<float>::quiet_NaN();
    writeWave(companion.voice(3), brokenBetween, 96000);
    const Outcome broken = companion.run({"doctor"});
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_THAT(broken.out, HasSubstr("127 of 128 are sound"));
    EXPECT_THAT(broken.out, HasSubstr("3.wav holds samples that are no numbers."));
}

TEST(Doctor, SaysWhatToDoWithoutAnOutput) {
    const Outcome outcome = Companion().run({"doctor"}, "unreadable");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, HasSubstr("There is no output. Start a sound server"));
}

TEST(Doctor, TellsTheSameInJson) {
    const Companion companion;
    std::filesystem::remove(companion.voice(128));
    const Outcome outcome = companion.run({"doctor", "--json"}, "virtual:16@88200");
    EXPECT_EQ(outcome.exitCode, 1);
    const auto told = QJsonDocument::fromJson(QByteArray::fromStdString(outcome.out)).object();
    EXPECT_EQ(told["version"].toString(), TALLYVOX_VERSION);
    EXPECT_FALSE(told["ready"].toBool(true));
    EXPECT_TRUE(told["realtime"].isBool());
    EXPECT_TRUE(told["layers"].isArray());
    const auto recordings = told["recordings"].toObject();
    EXPECT_EQ(recordings["sound"].toInteger(), 127);
    EXPECT_EQ(recordings["expected"].toInteger(), 128);
    EXPECT_EQ(recordings["complaints"].toArray().size(), 1);
    ASSERT_EQ(told["outputs"].toArray().size(), 1);
    const auto output = told["outputs"].toArray()[0].toObject();
    EXPECT_EQ(output["channels"].toInteger(), 16);
    EXPECT_TRUE(output["ready"].toBool());
    EXPECT_EQ(output["layer"].toString(), "virtual");
}

}
}
