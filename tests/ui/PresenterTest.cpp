#include "ui/Presenter.h"
#include "tests/support/FakeHardware.h"

#include <gtest/gtest.h>

#include <QtTest/QSignalSpy>

namespace tallyvox {
namespace {

class Presented : public testing::Test {
protected:
    Presented() {
        hardware.addDevice(7, "Card", {16}, 48000);
        hardware.addDevice(9, "Dante Virtual Soundcard", {32, 32}, 96000);
        hardware.addDevice(11, "Wall", {200}, 44100);
    }

    FakeHardware hardware;
    std::unique_ptr<Model> model_;
    std::unique_ptr<Presenter> presenter_;

    Model& model() {
        if (!model_)
            model_ = std::make_unique<Model>(hardware);
        return *model_;
    }
    Presenter& presenter() {
        if (!presenter_)
            presenter_ = std::make_unique<Presenter>(model());
        return *presenter_;
    }
    qlonglong cells() { return presenter().channels()->rowCount(); }
};

TEST_F(Presented, OutputsAreOfferedInTheirOrder) {
    EXPECT_EQ(presenter().outputs(),
              (QStringList{QStringLiteral("Card — 16 outputs"),
                           QStringLiteral("Dante Virtual Soundcard — 64 outputs"),
                           QStringLiteral("Wall — 200 outputs")}));
    EXPECT_EQ(presenter().output(), 1);
}

TEST_F(Presented, NoOutputIsChosenWhereTheChosenOneIsNotListed) {
    presenter();
    model().setSelected(12345);
    EXPECT_EQ(presenter().output(), -1);
}

TEST_F(Presented, NothingHappensToTheModelAtFirst) {
    model().setLast(12);
    model().setSolo(3);
    presenter();
    EXPECT_EQ(model().last(), 12);
    EXPECT_EQ(model().solo(), 3);
}

TEST_F(Presented, ChoosingAnOutputClampsTheRange) {
    presenter();
    model().setLast(40);
    model().setSolo(40);
    presenter().choose(0);
    EXPECT_EQ(model().selected(), 7U);
    EXPECT_EQ(model().last(), 16);
    EXPECT_EQ(model().solo(), 0);
}

TEST_F(Presented, ChoosingTheSameOutputChangesNothing) {
    presenter();
    model().setSolo(3);
    presenter().choose(1);
    EXPECT_EQ(model().solo(), 3);
}

TEST_F(Presented, AChangeOfTheModeClearsTheSolo) {
    presenter();
    for (const bool sequential : {true, false}) {
        model().setSolo(3);
        presenter().flipSequential();
        EXPECT_EQ(model().sequential(), sequential);
        EXPECT_EQ(model().solo(), 0);
    }
}

TEST_F(Presented, AllChannelsWidensTheRangeAndGivesItBack) {
    presenter();
    model().setFirst(3);
    model().setLast(6);
    model().setSolo(4);
    presenter().flipAllChannels();
    EXPECT_EQ(model().first(), 1);
    EXPECT_EQ(model().last(), 64);
    EXPECT_EQ(model().solo(), 0);
    EXPECT_EQ(cells(), 64);
    presenter().flipAllChannels();
    EXPECT_EQ(model().first(), 3);
    EXPECT_EQ(model().last(), 6);
    EXPECT_EQ(cells(), 4);
}

TEST_F(Presented, SteppersStayInTheirRanges) {
    presenter();
    presenter().moveFirst(-1);
    EXPECT_EQ(model().first(), 1);
    presenter().moveFirst(100);
    EXPECT_EQ(model().first(), 8);
    presenter().moveLast(-1);
    EXPECT_EQ(model().last(), 8);
    presenter().moveLast(1000);
    EXPECT_EQ(model().last(), 64);
    EXPECT_EQ(presenter().firstRange(), (Range{1, 64}));
    EXPECT_EQ(presenter().lastRange(), (Range{8, 64}));
}

TEST_F(Presented, TheLastStepperEndsAt128) {
    presenter().choose(2);
    presenter().moveLast(1000);
    EXPECT_EQ(model().last(), 128);
    EXPECT_EQ(cells(), 128);
}

TEST_F(Presented, LevelAndGapTakeWholeSteps) {
    presenter().setLevel(-23.7);
    EXPECT_EQ(model().db(), -24);
    presenter().setLevel(-1);
    EXPECT_EQ(model().db(), -6);
    presenter().setLevel(-100);
    EXPECT_EQ(model().db(), -60);
    presenter().setGap(0.2 + 0.1);
    EXPECT_EQ(model().gap(), 0.3);
    presenter().setGap(0);
    EXPECT_EQ(model().gap(), 0.2);
    presenter().setGap(9);
    EXPECT_EQ(model().gap(), 3.0);
}

TEST_F(Presented, PressingACellSolosMovesAndClears) {
    presenter().flipSolo(3);
    EXPECT_EQ(model().solo(), 3);
    presenter().flipSolo(5);
    EXPECT_EQ(model().solo(), 5);
    presenter().flipSolo(5);
    EXPECT_EQ(model().solo(), 0);
}

TEST_F(Presented, ItIsLockedWhileItRunsOrPrepares) {
    presenter();
    QSignalSpy told(&presenter(), &Presenter::lockedChanged);
    EXPECT_FALSE(presenter().locked());
    model().setBusy(true);
    EXPECT_TRUE(presenter().locked());
    EXPECT_TRUE(presenter().unplayable());
    model().setBusy(false);
    model().setRunning(true);
    EXPECT_TRUE(presenter().locked());
    EXPECT_EQ(told.size(), 3);
    model().setRunning(false);
    EXPECT_FALSE(presenter().unplayable());
}

TEST_F(Presented, ItIsUnplayableWithoutAnOutputOrItsChannels) {
    presenter();
    QSignalSpy told(&presenter(), &Presenter::unplayableChanged);
    model().setOutputs({{9, "Silent", 0, 48000}});
    EXPECT_TRUE(presenter().unplayable());
    model().setOutputs({});
    EXPECT_TRUE(presenter().unplayable());
    EXPECT_FALSE(presenter().locked());
    EXPECT_GE(told.size(), 2);
}

TEST_F(Presented, TheCellsFollowTheRangeOnTheModelsWord) {
    presenter();
    EXPECT_EQ(cells(), 8);
    model().setFirst(5);
    EXPECT_EQ(cells(), 4);
    model().setLast(1);
    EXPECT_EQ(cells(), 1);
}

}
}
