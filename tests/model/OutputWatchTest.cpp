#include "model/OutputWatch.h"

#include "tests/model/ModelTest.h"

namespace tallyvox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto changed = "Output changed or disconnected. Refresh outputs before restarting.";

class OutputWatch : public ModelTest {
protected:
    OutputWatch() {
        hardware.addDevice(3, "First", {2}, 48000);
        makeWith(16);
        model->setSelected(7);
        play();
        hardware.log.clear();
    }
    void expectStillPlaying() {
        watchOutput(*model);
        EXPECT_TRUE(model->running());
        EXPECT_EQ(status(), "Playing to Out · 48000 Hz");
        EXPECT_TRUE(hardware.running(7));
    }
    void expectStopped() {
        std::vector<std::string> seen;
        const auto connection =
            QObject::connect(&*model, &Model::statusChanged, [&] { seen.push_back(status()); });
        watchOutput(*model);
        QObject::disconnect(connection);
        EXPECT_THAT(seen, ElementsAre("Stopped.", changed));
        EXPECT_FALSE(model->running());
        EXPECT_EQ(hardware.registered(), 0U);
    }
};

TEST_F(OutputWatch, AnUnchangedOutputPlaysOn) { expectStillPlaying(); }

TEST_F(OutputWatch, ARenamedOutputPlaysOn) {
    hardware.property(7, kAudioObjectPropertyName).text = "Renamed";
    expectStillPlaying();
}

TEST_F(OutputWatch, OtherOutputsMayComeAndGo) {
    hardware.removeDevice(3);
    hardware.addDevice(9, "Late", {2}, 48000);
    expectStillPlaying();
    EXPECT_EQ(model->outputs().size(), 2U);
}

TEST_F(OutputWatch, ARemovedOutputStops) {
    hardware.removeDevice(7);
    expectStopped();
    EXPECT_EQ(model->outputs().size(), 2U); // the list waits for a refresh
    EXPECT_EQ(model->selected(), 7U);
}

TEST_F(OutputWatch, AChangedChannelCountStops) {
    hardware.setBuffers(7, {15});
    expectStopped();
}

TEST_F(OutputWatch, ARegroupedOutputOfTheSameChannelsPlaysOn) {
    hardware.setBuffers(7, {8, 8});
    expectStillPlaying();
}

TEST_F(OutputWatch, TheSmallestChangeOfTheRateStops) {
    hardware.setRate(7, std::nextafter(48000.0, 0.0));
    expectStopped();
}

TEST_F(OutputWatch, ASelectionThatIsNotListedStops) {
    model->setOutputs({});
    expectStopped();
}

TEST_F(OutputWatch, AListThatCannotBeReadStops) {
    hardware.property(kAudioObjectSystemObject, kAudioHardwarePropertyDevices).sizeStatus = -1;
    expectStopped();
}

TEST_F(OutputWatch, ItStopsBeforeItSpeaks) {
    hardware.removeDevice(7);
    std::size_t registered = 9;
    QObject::connect(&*model, &Model::runningWillBecome,
                     [&](bool) { registered = hardware.registered(); });
    watchOutput(*model);
    EXPECT_EQ(registered, 0U);
}

TEST_F(OutputWatch, NothingIsAskedWhileNothingPlays) {
    model->stop();
    hardware.removeDevice(7);
    hardware.log.clear();
    watchOutput(*model);
    EXPECT_EQ(status(), "Stopped.");
    EXPECT_THAT(hardware.log, IsEmpty());
}

TEST_F(OutputWatch, AStartUnderWayIsNotWatched) {
    model->stop();
    model->start();
    hardware.removeDevice(7);
    watchOutput(*model);
    EXPECT_EQ(status(), "Preparing spoken numbers…");
    expectState(true, false);
}

TEST_F(OutputWatch, AStartUnderWayWhilePlayingIsNotCalledBack) {
    model->start();
    hardware.setRate(7, 44100);
    expectStopped();
    expectState(true, false);
    hardware.setRate(7, 48000);
    elapse(*model);
    expectState(false, true);
}

}
}
