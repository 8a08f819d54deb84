#include "tests/ctl/Companion.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

namespace tallyvox {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

TEST(List, TellsEveryOutputWithItsLayerInOrder) {
    const Outcome list = Companion().run({"list"}, "virtual:8@44100,64@48000");
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_EQ(list.out, "2: Virtual 8 channels | 8 outputs | 44100.0 Hz | virtual\n"
                        "3: Virtual 64 channels | 64 outputs | 48000.0 Hz | virtual\n");
    EXPECT_THAT(list.err, IsEmpty());
}

TEST(List, IsAnArrayOfObjectsInJson) {
    const Outcome list = Companion().run({"list", "--json"}, "virtual:8@44100,128@96000");
    EXPECT_EQ(list.exitCode, 0);
    const auto outputs = QJsonDocument::fromJson(QByteArray::fromStdString(list.out)).array();
    ASSERT_EQ(outputs.size(), 2);
    const QJsonObject last = outputs[1].toObject();
    EXPECT_EQ(last["id"].toInteger(), 3);
    EXPECT_EQ(last["name"].toString(), "Virtual 128 channels");
    EXPECT_EQ(last["channels"].toInteger(), 128);
    EXPECT_EQ(last["rate"].toDouble(), 96000.0);
    EXPECT_EQ(last["layer"].toString(), "virtual");
}

TEST(List, WithoutOutputsIsEmpty) {
    const Companion companion;
    const Outcome text = companion.run({"list"}, "unreadable");
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_THAT(text.out, IsEmpty());
    EXPECT_THAT(text.err, HasSubstr("unreadable"));
    const Outcome json = companion.run({"list", "--json"}, "unreadable");
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(json.out));
    EXPECT_TRUE(document.isArray());
    EXPECT_TRUE(document.array().isEmpty());
}

TEST(List, OnAFullDiskFails) {
    const Companion companion;
    Command command = companion.command({"list"});
    command.out = "/dev/full";
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, HasSubstr("No space left on device"));
}

TEST(List, IntoAClosedPipeFailsInSilence) {
    const Companion companion;
    Command command = companion.command({"list"});
    command.outClosed = true;
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.err, IsEmpty());
}

}
}
