#include "tests/model/ModelTest.h"
#include "tests/model/observe.h"

#include <QtCore/QMetaProperty>

#include <algorithm>

namespace tallyvox {
namespace {

using testing::ElementsAre;

class Notification : public ModelTest {
protected:
    /// Everything that the model tells from here on, one line each.
    void listen() {
        observe(*model, [this](std::string line) { heard.push_back(std::move(line)); });
    }
    std::vector<std::string> heard;
};

TEST_F(Notification, AnAssignmentAnnouncesThenStreamsThenStoresThenNotifies) {
    makeWith(16);
    listen();
    model->setFirst(5);
    EXPECT_THAT(heard, ElementsAre("will change", "first 1 -> 5", "first changed"));
    EXPECT_EQ(model->first(), 5);
}

TEST_F(Notification, TheAnnouncementFindsTheOldValue) {
    makeWith(16);
    qint64 seen = 0;
    QObject::connect(&*model, &Model::objectWillChange, [&] { seen = model->last(); });
    model->setLast(12);
    EXPECT_EQ(seen, 8);
}

TEST_F(Notification, TheChangeIsNotifiedAfterTheStore) {
    makeWith(16);
    qint64 seen = 0;
    QObject::connect(&*model, &Model::lastChanged, [&] { seen = model->last(); });
    model->setLast(12);
    EXPECT_EQ(seen, 12);
}

TEST_F(Notification, AnEqualValueIsAnnouncedAndStreamedButNotNotified) {
    makeWith(16);
    listen();
    model->setFirst(1);
    model->setStatus(model->status());
    model->setOutputs(model->outputs());
    EXPECT_THAT(heard,
                ElementsAre("will change", "first 1 -> 1", "will change",
                            "status Stopped. Choose an output and press Start. -> Stopped. Choose "
                            "an output and press Start.",
                            "will change", "outputs 1 -> 1"));
}

TEST_F(Notification, EveryPropertyTellsOfItself) {
    makeWith(16);
    listen();
    model->setOutputs({});
    model->setSelected(3);
    model->setFirst(2);
    model->setLast(3);
    model->setSolo(2);
    model->setDb(-12);
    model->setGap(1.5);
    model->setSequential(true);
    model->setAllChannels(true);
    model->setRunning(true);
    model->setBusy(true);
    model->setStatus(QStringLiteral("x"));
    EXPECT_THAT(
        heard,
        ElementsAre("will change", "outputs 1 -> 0", "device changed", "outputs changed",
                    "will change", "selected 7 -> 3", "device changed", "selected changed",
                    "will change", "first 1 -> 2", "first changed", "will change", "last 8 -> 3",
                    "last changed", "will change", "solo 0 -> 2", "solo changed", "will change",
                    "db -24 -> -12", "db changed", "will change", "gap 0.7 -> 1.5", "gap changed",
                    "will change", "sequential 0 -> 1", "sequential changed", "will change",
                    "allChannels 0 -> 1", "allChannels changed", "will change", "running 0 -> 1",
                    "running changed", "will change", "busy 0 -> 1", "busy changed", "will change",
                    "status Stopped. Choose an output and press Start. -> x", "status changed"));
}

TEST_F(Notification, EveryPublishedPropertyCanBeWrittenByName) {
    makeWith(16);
    for (const auto& [name, value] :
         std::vector<std::pair<const char*, QVariant>>{{"selected", 3U},
                                                       {"first", qint64{2}},
                                                       {"last", qint64{3}},
                                                       {"solo", qint64{2}},
                                                       {"db", -12.0},
                                                       {"gap", 1.5},
                                                       {"sequential", true},
                                                       {"allChannels", true},
                                                       {"running", true},
                                                       {"busy", true},
                                                       {"status", QStringLiteral("x")}}) {
        EXPECT_TRUE(model->setProperty(name, value)) << name;
        EXPECT_EQ(model->property(name), value) << name;
    }
}

TEST_F(Notification, EveryPropertyHasANotification) {
    make();
    const auto* meta = model->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
        EXPECT_TRUE(meta->property(i).hasNotifySignal()) << meta->property(i).name();
    EXPECT_EQ(meta->propertyCount() - meta->propertyOffset(), 14);
}

TEST_F(Notification, TheManualRangeNotifiesNobody) {
    makeWith(16);
    listen();
    model->manualFirst = 4;
    model->manualLast = 5;
    EXPECT_THAT(heard, testing::IsEmpty());
}

TEST_F(Notification, ClampingAssignsFirstLastAndSoloInThisOrder) {
    makeWith(4);
    setRange(0, 9);
    listen();
    model->clamp();
    EXPECT_THAT(heard, ElementsAre("will change", "first 0 -> 1", "first changed", "will change",
                                   "last 9 -> 4", "last changed", "will change", "solo 0 -> 0"));
    heard.clear();
    model->clamp();
    EXPECT_THAT(heard, ElementsAre("will change", "first 1 -> 1", "will change", "last 4 -> 4",
                                   "will change", "solo 0 -> 0"));
}

TEST_F(Notification, AllChannelsAssignsFirstLastAndSoloInThisOrder) {
    makeWith(16);
    setRange(3, 6);
    model->setSolo(4);
    model->setAllChannels(true);
    listen();
    model->selectAllChannels();
    EXPECT_THAT(heard, ElementsAre("will change", "first 3 -> 1", "first changed", "will change",
                                   "last 6 -> 16", "last changed", "will change", "solo 4 -> 0",
                                   "solo changed"));
    model->setAllChannels(false);
    heard.clear();
    model->selectAllChannels();
    EXPECT_THAT(heard, ElementsAre("will change", "first 1 -> 3", "first changed", "will change",
                                   "last 16 -> 6", "last changed", "will change", "solo 0 -> 0"));
}

TEST_F(Notification, ClampingUsesTheFirstThatIsStoredThen) {
    makeWith(16);
    setRange(3, 4);
    QObject::connect(&*model, &Model::firstChanged, [&] {
        if (model->first() == 1)
            model->setFirst(9);
    });
    model->setFirst(0);
    model->clamp();
    EXPECT_EQ(model->first(), 9);
    EXPECT_EQ(model->last(), 9);
}

TEST_F(Notification, AStartIsToldInItsOrder) {
    makeWith(4);
    setRange(1, 4);
    listen();
    model->start();
    EXPECT_THAT(heard,
                ElementsAre("will change", "busy 0 -> 1", "busy changed", "will change",
                            "status Stopped. Choose an output and press Start. -> Preparing spoken "
                            "numbers…",
                            "status changed"));
    heard.clear();
    elapse(*model);
    EXPECT_THAT(heard,
                ElementsAre("will change", "running 0 -> 1", "running changed", "will change",
                            "status Preparing spoken numbers… -> Playing to Out · 48000 Hz",
                            "status changed", "will change", "busy 1 -> 0", "busy changed"));
}

TEST_F(Notification, AFailedStartClearsBusyLast) {
    makeWith(4);
    setRange(1, 4);
    hardware.createStatus = -1;
    model->start();
    listen();
    elapse(*model);
    EXPECT_THAT(heard, ElementsAre("will change", "running 0 -> 0", "will change",
                                   "status Preparing spoken numbers… -> Open output failed (-1). "
                                   "Check that the output device is running.",
                                   "status changed", "will change", "busy 1 -> 0", "busy changed"));
}

TEST_F(Notification, ARefusedStartTellsOfTheStatusOnly) {
    make();
    listen();
    model->start();
    EXPECT_THAT(heard, ElementsAre("will change",
                                   "status Stopped. Choose an output and press Start. -> Output "
                                   "unavailable. Start DVS, then refresh outputs.",
                                   "status changed"));
}

TEST_F(Notification, AStopIsToldInItsOrder) {
    makeWith(4);
    listen();
    model->stop();
    EXPECT_THAT(heard, ElementsAre("will change", "running 0 -> 0", "will change",
                                   "status Stopped. Choose an output and press Start. -> Stopped.",
                                   "status changed"));
}

TEST_F(Notification, ARefreshStopsThenListsThenSelectsThenClamps) {
    makeWith(4);
    model->stop();
    hardware.removeDevice(7);
    hardware.addDevice(3, "Next", {2}, 48000);
    listen();
    model->refresh();
    EXPECT_THAT(heard, ElementsAre("will change", "running 0 -> 0", "will change",
                                   "status Stopped. -> Stopped.", "will change", "outputs 1 -> 1",
                                   "device changed", "outputs changed", "will change",
                                   "selected 7 -> 3", "device changed", "selected changed",
                                   "will change", "first 1 -> 1", "will change", "last 4 -> 2",
                                   "last changed", "will change", "solo 0 -> 0"));
}

TEST_F(Notification, ARefreshThatKeepsTheSelectionDoesNotAssignIt) {
    makeWith(4);
    model->stop();
    listen();
    model->refresh();
    EXPECT_THAT(heard, ElementsAre("will change", "running 0 -> 0", "will change",
                                   "status Stopped. -> Stopped.", "will change", "outputs 1 -> 1",
                                   "will change", "first 1 -> 1", "will change", "last 4 -> 4",
                                   "will change", "solo 0 -> 0"));
}

}
}
