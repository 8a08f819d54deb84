#include "tests/model/ModelTest.h"

namespace tallyvox {
namespace {

using testing::Pair;

TEST_F(ModelTest, EverySettingStartsFromItsDefault) {
    makeWith(16);
    EXPECT_EQ(model->outputs(), devices(hardware));
    EXPECT_EQ(model->selected(), 7U);
    EXPECT_THAT(range(), Pair(1, 8));
    EXPECT_EQ(model->solo(), 0);
    EXPECT_EQ(model->db(), -24.0);
    EXPECT_EQ(model->gap(), 0.7);
    EXPECT_FALSE(model->sequential());
    EXPECT_FALSE(model->allChannels());
    EXPECT_EQ(model->manualFirst, 1);
    EXPECT_EQ(model->manualLast, 8);
    expectState(false, false);
    EXPECT_EQ(status(), "Stopped. Choose an output and press Start.");
    EXPECT_EQ(model->audio().proc(), std::nullopt);
}

TEST_F(ModelTest, WithoutOutputsNothingIsChosenAndTheRangeIsInverted) {
    make();
    EXPECT_TRUE(model->outputs().empty());
    EXPECT_EQ(model->selected(), 0U);
    EXPECT_EQ(model->selectedDevice(), std::nullopt);
    EXPECT_FALSE(model->selectedRecord().isValid());
    EXPECT_EQ(model->maximum(), 0);
    EXPECT_THAT(range(), Pair(1, 0));
    model->setSolo(3);
    model->clamp();
    EXPECT_THAT(range(), Pair(1, 1));
    EXPECT_EQ(model->solo(), 0);
}

TEST_F(ModelTest, APreferredNameIsChosenInAnyCase) {
    hardware.addDevice(3, "Speakers", {2}, 48000);
    hardware.addDevice(4, "dante virtual soundcard", {64}, 48000);
    EXPECT_EQ(make().selected(), 4U);
    EXPECT_THAT(range(), Pair(1, 8));
}

TEST_F(ModelTest, APreferredNameMayStandAnywhereInIt) {
    hardware.addDevice(3, "Speakers", {2}, 48000);
    hardware.addDevice(4, "My ANDANTE box", {64}, 48000);
    EXPECT_EQ(make().selected(), 4U);
}

TEST_F(ModelTest, TheEarlierOfTwoPreferredNamesIsChosen) {
    hardware.addDevice(3, "Speakers", {2}, 48000);
    hardware.addDevice(9, "Dante B", {2}, 48000);
    hardware.addDevice(4, "Dante A", {64}, 48000);
    EXPECT_EQ(make().selected(), 9U);
}

TEST_F(ModelTest, WithoutAPreferredNameTheFirstOutputIsChosen) {
    hardware.addDevice(9, "Dan te", {2}, 48000);
    hardware.addDevice(4, "Speakers", {64}, 48000);
    EXPECT_EQ(make().selected(), 9U);
}

TEST_F(ModelTest, TwoChannelsStartWithARangeOfTwoAndAManualRangeOfEight) {
    makeWith(2);
    EXPECT_THAT(range(), Pair(1, 2));
    EXPECT_EQ(model->manualFirst, 1);
    EXPECT_EQ(model->manualLast, 8);
}

TEST_F(ModelTest, TheMaximumIsThatOfTheChosenOutputCappedAt128) {
    hardware.addDevice(3, "Small", {2}, 48000);
    hardware.addDevice(4, "Huge", {200}, 48000);
    EXPECT_EQ(make().maximum(), 2);
    model->setSelected(4);
    EXPECT_EQ(model->maximum(), 128);
    model->setSelected(5);
    EXPECT_EQ(model->maximum(), 0);
}

TEST_F(ModelTest, TheChosenOutputIsTheListedOneNotTheOneThatExistsNow) {
    makeWith(4);
    hardware.setBuffers(7, {9});
    EXPECT_EQ(model->selectedDevice()->channels, 4);
    hardware.removeDevice(7);
    EXPECT_EQ(model->maximum(), 4);
    model->setOutputs({});
    EXPECT_EQ(model->selectedDevice(), std::nullopt);
}

TEST_F(ModelTest, TheFirstOfTwoOutputsWithOneIdIsTheChosenOne) {
    makeWith(4);
    model->setOutputs({{7, "A", 2, 48000}, {7, "B", 9, 48000}});
    EXPECT_EQ(model->selectedDevice()->name, "A");
}

TEST_F(ModelTest, OutputsReadAsRecords) {
    hardware.addDevice(4000000000U, "Größe", {200}, 47952.5);
    const auto records = make().property("outputs").toList();
    ASSERT_EQ(records.size(), 1);
    const auto record = records.at(0).toMap();
    EXPECT_EQ(record["id"].toUInt(), 4000000000U);
    EXPECT_EQ(record["name"].toString(), QStringLiteral("Größe"));
    EXPECT_EQ(record["channels"].toLongLong(), 200);
    EXPECT_EQ(record["rate"].toDouble(), 47952.5);
    EXPECT_EQ(model->property("selectedDevice").toMap(), record);
    EXPECT_EQ(model->property("maximum").toLongLong(), 128);
}

TEST_F(ModelTest, ClampingOnAWideOutputStopsAt128) {
    makeWith(200);
    setRange(1, 500);
    model->clamp();
    EXPECT_THAT(range(), Pair(1, 128));
    setRange(300, 500);
    model->clamp();
    EXPECT_THAT(range(), Pair(128, 128));
}

TEST_F(ModelTest, ClampingBringsBothEndsIntoTheOutput) {
    makeWith(64);
    setRange(0, 500);
    model->clamp();
    EXPECT_THAT(range(), Pair(1, 64));
    setRange(70, 80);
    model->clamp();
    EXPECT_THAT(range(), Pair(64, 64));
    setRange(-7, -9);
    model->clamp();
    EXPECT_THAT(range(), Pair(1, 1));
}

TEST_F(ModelTest, ClampingAnInvertedRangeKeepsItsFirst) {
    makeWith(64);
    setRange(10, 4);
    model->clamp();
    EXPECT_THAT(range(), Pair(10, 10));
}

TEST_F(ModelTest, ClampingClearsTheSoloWhateverTheRange) {
    makeWith(64);
    setRange(1, 8);
    model->setSolo(5);
    model->clamp();
    EXPECT_EQ(model->solo(), 0);
    EXPECT_THAT(range(), Pair(1, 8));
}

TEST_F(ModelTest, ClampingLeavesTheManualRangeAlone) {
    makeWith(4);
    model->manualFirst = 50;
    model->manualLast = -3;
    model->clamp();
    model->setAllChannels(true);
    model->clamp();
    EXPECT_EQ(model->manualFirst, 50);
    EXPECT_EQ(model->manualLast, -3);
}

TEST_F(ModelTest, AllChannelsWidensTheRangeAndBringsItBack) {
    makeWith(16);
    setRange(3, 6);
    model->setSolo(4);
    model->setAllChannels(true);
    model->selectAllChannels();
    EXPECT_THAT(range(), Pair(1, 16));
    EXPECT_EQ(model->manualFirst, 3);
    EXPECT_EQ(model->manualLast, 6);
    EXPECT_EQ(model->solo(), 0);
    model->setSolo(4);
    model->setAllChannels(false);
    model->selectAllChannels();
    EXPECT_THAT(range(), Pair(3, 6));
    EXPECT_EQ(model->solo(), 0);
}

TEST_F(ModelTest, SettingASwitchAloneChangesNothingElse) {
    makeWith(16);
    setRange(3, 6);
    model->setSolo(4);
    model->setAllChannels(true);
    model->setSequential(true);
    model->setSelected(0);
    EXPECT_THAT(range(), Pair(3, 6));
    EXPECT_EQ(model->solo(), 4);
    EXPECT_EQ(model->manualFirst, 1);
}

TEST_F(ModelTest, ChangingTheOutputWhileAllChannelsIsOnWidensAgain) {
    hardware.addDevice(3, "Wide", {16}, 48000);
    hardware.addDevice(4, "Narrow", {8}, 48000);
    make();
    setRange(3, 12);
    model->setAllChannels(true);
    model->selectAllChannels();
    model->setSelected(4);
    model->clamp();
    EXPECT_THAT(range(), Pair(1, 8));
    model->setAllChannels(false);
    model->selectAllChannels();
    EXPECT_THAT(range(), Pair(3, 8));
}

TEST_F(ModelTest, ASavedRangeBeyondTheNewOutputComesBackAtItsEnd) {
    hardware.addDevice(3, "Wide", {16}, 48000);
    hardware.addDevice(4, "Narrow", {4}, 48000);
    make();
    setRange(10, 12);
    model->setAllChannels(true);
    model->selectAllChannels();
    model->setSelected(4);
    model->clamp();
    model->setAllChannels(false);
    model->selectAllChannels();
    EXPECT_THAT(range(), Pair(4, 4));
}

TEST_F(ModelTest, ASavedRangeWithoutAnOutputComesBackAtChannel1) {
    makeWith(16);
    setRange(3, 6);
    model->setAllChannels(true);
    model->selectAllChannels();
    model->setOutputs({});
    model->setAllChannels(false);
    model->selectAllChannels();
    EXPECT_THAT(range(), Pair(1, 1));
}

TEST_F(ModelTest, ASavedFirstBelow1ComesBackAsItWas) {
    makeWith(16);
    setRange(-2, -5);
    model->setAllChannels(true);
    model->selectAllChannels();
    model->setAllChannels(false);
    model->selectAllChannels();
    EXPECT_THAT(range(), Pair(-2, -2));
}

TEST_F(ModelTest, ApplyingTheSwitchTwiceOverwritesTheSavedRange) {
    makeWith(16);
    setRange(3, 6);
    model->setAllChannels(true);
    model->selectAllChannels();
    model->selectAllChannels();
    model->setAllChannels(false);
    model->selectAllChannels();
    EXPECT_THAT(range(), Pair(1, 16));
}

}
}
