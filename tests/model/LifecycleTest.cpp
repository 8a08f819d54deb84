#include "tests/model/ModelTest.h"
#include "tests/support/death.h"

#include <QtCore/QElapsedTimer>

namespace tallyvox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr auto unavailable = "Output unavailable. Start DVS, then refresh outputs.";
constexpr auto wrongRange =
    "Output channel count changed. Refresh outputs and select the range again.";

class Lifecycle : public ModelTest {
protected:
    void expectRefused(const char* why) {
        const bool wasRunning = model->running();
        const auto log = hardware.streamLog();
        model->start();
        EXPECT_EQ(status(), why);
        expectState(false, wasRunning);
        EXPECT_EQ(waitingStarts(*model), 0);
        EXPECT_EQ(hardware.streamLog(), log);
    }
};

// The refusals.

TEST_F(Lifecycle, AStartWithoutAChosenOutputIsRefused) {
    make();
    expectRefused(unavailable);
}

TEST_F(Lifecycle, AStartOnAnUnpluggedOutputIsRefused) {
    makeWith(16);
    hardware.removeDevice(7);
    expectRefused(unavailable);
    EXPECT_EQ(model->outputs().size(), 1U); // the list waits for a refresh
}

TEST_F(Lifecycle, AnUnavailableOutputIsSaidBeforeAWrongRange) {
    make();
    setRange(9, 3);
    expectRefused(unavailable);
}

TEST_F(Lifecycle, ARefusalWhilePlayingLeavesThePlayback) {
    makeWith(16);
    play();
    hardware.removeDevice(7);
    expectRefused(unavailable);
    EXPECT_TRUE(hardware.running(7));
}

TEST_F(Lifecycle, ARangeBeyondTheChannelsOfNowIsRefused) {
    makeWith(16);
    setRange(1, 8);
    hardware.setBuffers(7, {4});
    expectRefused(wrongRange);
}

TEST_F(Lifecycle, ARangeBeyondTheListedChannelsIsAcceptedWhereTheOutputHasGrown) {
    makeWith(4);
    setRange(1, 8);
    hardware.setBuffers(7, {16});
    play();
    EXPECT_EQ(status(), "Playing to Out · 48000 Hz");
    EXPECT_EQ(model->audio().renderer()->enabled().size(), 16U);
}

TEST_F(Lifecycle, AnInvertedRangeIsRefused) {
    makeWith(16);
    setRange(9, 8);
    expectRefused(wrongRange);
}

TEST_F(Lifecycle, ChannelsBeyond128AreRefused) {
    voices.fillUpTo(128);
    makeWith(200);
    setRange(1, 129);
    expectRefused(wrongRange);
    setRange(1, 128);
    play();
    EXPECT_EQ(announcing().size(), 128U);
    EXPECT_EQ(model->audio().renderer()->enabled().size(), 128U);
}

TEST_F(Lifecycle, ASoloOutsideTheRangeIsRefused) {
    makeWith(16);
    for (const std::int64_t solo : {9, -1, 100}) {
        model->setSolo(solo);
        expectRefused(wrongRange);
    }
    model->setSequential(true); // also where it would be ignored
    expectRefused(wrongRange);
}

TEST_F(Lifecycle, AFirstBelow1IsNotRefused) {
    makeWith(4);
    setRange(-3, 2);
    play();
    EXPECT_THAT(announcing(), ElementsAre(1, 2));
}

// Preparing and playing.

TEST_F(Lifecycle, AnAcceptedStartPreparesFirst) {
    makeWith(16);
    model->start();
    expectState(true, false);
    EXPECT_EQ(status(), "Preparing spoken numbers\xE2\x80\xA6");
    EXPECT_EQ(waitingStarts(*model), 1);
    EXPECT_THAT(hardware.streamLog(), IsEmpty());
}

TEST_F(Lifecycle, ItPlaysAfter50Milliseconds) {
    makeWith(2);
    QElapsedTimer clock;
    clock.start();
    model->start();
    while (model->busy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_GE(clock.elapsed(), 49);
    expectState(false, true);
}

TEST_F(Lifecycle, ThePlayingStatusNamesOutputAndRate) {
    makeWith(2, 44100);
    play();
    EXPECT_EQ(status(), "Playing to Out \xC2\xB7 44100 Hz");
    expectState(false, true);
    EXPECT_TRUE(hardware.running(7));
}

TEST_F(Lifecycle, TheRateIsTruncatedAndNotGrouped) {
    hardware.addDevice(7, "Dante %1 %L2 Ω", {2}, 192000.99);
    make();
    play();
    EXPECT_EQ(status(), "Playing to Dante %1 %L2 Ω · 192000 Hz");
}

TEST_F(Lifecycle, TheRangeAloneAnnounces) {
    makeWith(16);
    setRange(5, 8);
    play();
    EXPECT_THAT(announcing(), ElementsAre(5, 6, 7, 8));
    EXPECT_EQ(model->audio().renderer()->enabled().size(), 16U);
}

TEST_F(Lifecycle, ASoloAnnouncesAlone) {
    makeWith(16);
    model->setSolo(3);
    play();
    EXPECT_THAT(announcing(), ElementsAre(3));
}

TEST_F(Lifecycle, ASoloIsIgnoredInTurn) {
    makeWith(16);
    model->setSolo(3);
    model->setSequential(true);
    play();
    EXPECT_THAT(announcing(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_TRUE(model->audio().renderer()->sequential());
}

TEST_F(Lifecycle, TheLevelAndTheGapAreHandedOnUnchanged) {
    makeWith(1);
    model->setDb(20); // beyond what the window offers
    model->setGap(0.25);
    setRange(1, 1);
    play();
    EXPECT_EQ(model->audio().renderer()->gain(), 10.0F);
    EXPECT_EQ(model->audio().renderer()->cycle(), 9 + 12000);
}

TEST_F(Lifecycle, TheStepReadsTheValuesOfItsOwnMoment) {
    makeWith(16);
    model->setSolo(2);
    model->start();
    setRange(4, 5);
    model->setSolo(0);
    model->setSequential(true);
    model->setDb(-20);
    model->setGap(0);
    elapse(*model);
    EXPECT_THAT(announcing(), ElementsAre(4, 5));
    EXPECT_TRUE(model->audio().renderer()->sequential());
    EXPECT_EQ(model->audio().renderer()->gain(), 0.1F);
    EXPECT_EQ(model->audio().renderer()->cycle(), 24);
}

TEST_F(Lifecycle, TheStepKeepsTheOutputThatWasFound) {
    hardware.addDevice(7, "Out", {16}, 48000);
    hardware.addDevice(8, "Other", {2}, 48000);
    make();
    model->start();
    model->setSelected(8);
    model->setOutputs({});
    elapse(*model);
    EXPECT_EQ(status(), "Playing to Out · 48000 Hz");
    EXPECT_TRUE(hardware.running(7));
}

TEST_F(Lifecycle, ARangeBeyondTheOutputAtTheStepIsSilent) {
    makeWith(4);
    model->start();
    setRange(9, 12);
    elapse(*model);
    EXPECT_THAT(announcing(), IsEmpty());
    expectState(false, true);
}

TEST_F(Lifecycle, AnInvertedRangeAtTheStepStopsTheProcess) {
    makeWith(16);
    model->start();
    setRange(5, 4);
    EXPECT_SILENT_STOP(elapse(*model));
}

TEST_F(Lifecycle, ARateThatIsNoIntegerStopsTheProcess) {
    // Without streams nothing is compared with the rate; without frames nothing is resampled.
    voices.clear(1);
    hardware.addDevice(7, "Out", {1}, 9e18);
    hardware.setValue(7, kAudioDevicePropertyStreams, kAudioObjectPropertyScopeOutput,
                      std::vector<std::uint32_t>{});
    make();
    model->setGap(0);
    play();
    EXPECT_EQ(status(), "Playing to Out · 9000000000000000000 Hz");
    hardware.setValue(7, kAudioDevicePropertyNominalSampleRate, kAudioObjectPropertyScopeGlobal,
                      std::vector{9.3e18});
    model->start();
    EXPECT_SILENT_STOP(elapse(*model));
}

// Two starts, stops between.

TEST_F(Lifecycle, TwoStartsWithin50MillisecondsRunInTheirOrder) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.addDevice(8, "Next", {2}, 44100);
    make();
    model->start();
    model->setSelected(8);
    model->start();
    EXPECT_EQ(waitingStarts(*model), 2);

    std::vector<std::string> seen;
    QObject::connect(&*model, &Model::statusChanged, [&] { seen.push_back(status()); });
    QObject::connect(&*model, &Model::busyChanged,
                     [&] { seen.emplace_back(model->busy() ? "busy" : "not busy"); });
    elapse(*model);
    EXPECT_THAT(seen,
                ElementsAre("Playing to Out · 48000 Hz", "not busy", "Playing to Next · 44100 Hz"));
    EXPECT_THAT(hardware.streamLog(),
                ElementsAre("create 7", "start 7", "stop 7", "destroy 7", "create 8", "start 8"));
    expectState(false, true);
}

TEST_F(Lifecycle, AStartWhilePlayingPreparesWithThePlaybackGoingOn) {
    makeWith(2);
    play();
    model->start();
    expectState(true, true);
    EXPECT_TRUE(hardware.running(7));
    EXPECT_EQ(status(), "Preparing spoken numbers…");
    elapse(*model);
    expectState(false, true);
    EXPECT_THAT(hardware.streamLog(),
                ElementsAre("create 7", "start 7", "stop 7", "destroy 7", "create 7", "start 7"));
}

TEST_F(Lifecycle, AStopWhilePreparingDoesNotCallTheStartBack) {
    makeWith(2);
    model->start();
    model->stop();
    expectState(true, false);
    EXPECT_EQ(status(), "Stopped.");
    elapse(*model);
    expectState(false, true);
    EXPECT_EQ(status(), "Playing to Out · 48000 Hz");
}

TEST_F(Lifecycle, AStopEndsThePlayback) {
    makeWith(2);
    play();
    model->stop();
    expectState(false, false);
    EXPECT_EQ(status(), "Stopped.");
    EXPECT_FALSE(hardware.running(7));
    EXPECT_EQ(hardware.registered(), 0U);
}

TEST_F(Lifecycle, AStopWithoutPlaybackOnlySaysSo) {
    makeWith(2);
    model->stop();
    expectState(false, false);
    EXPECT_EQ(status(), "Stopped.");
    EXPECT_THAT(hardware.streamLog(), IsEmpty());
}

TEST_F(Lifecycle, ReleasingTheModelReleasesTheStreamAndWaitingStarts) {
    makeWith(2);
    play();
    model->start();
    model.reset();
    EXPECT_EQ(hardware.registered(), 0U);
    QCoreApplication::processEvents();
    EXPECT_THAT(hardware.streamLog(), ElementsAre("create 7", "start 7", "stop 7", "destroy 7"));
}

// Failures of the deferred step.

TEST_F(Lifecycle, AFailedStartShowsItsDescription) {
    makeWith(2);
    hardware.startStatus = -50;
    play();
    expectState(false, false);
    EXPECT_EQ(status(), "Start output failed (-50). Check that the output device is running.");
    EXPECT_EQ(hardware.registered(), 0U);
}

TEST_F(Lifecycle, AFailedRegistrationIsCleanedUp) {
    makeWith(2);
    hardware.createStatus = -50;
    play();
    expectState(false, false);
    EXPECT_EQ(status(), "Open output failed (-50). Check that the output device is running.");
    EXPECT_EQ(model->audio().renderer(), nullptr);
}

TEST_F(Lifecycle, AnOutputWithoutARateCannotBeStarted) {
    makeWith(2, 0);
    play();
    expectState(false, false);
    EXPECT_EQ(status(), "Output has no valid sample rate.");
}

TEST_F(Lifecycle, AnUnsuitableFormatIsExplained) {
    makeWith(2);
    auto format = FakeHardware::floatFormat(2, 48000);
    format.mBitsPerChannel = 24;
    hardware.setFormat(FakeHardware::streamId(7, 0), format);
    play();
    EXPECT_EQ(status(), "This output does not expose native 32-bit float audio. Select Dante "
                        "Virtual Soundcard or another compatible Core Audio output.");
}

TEST_F(Lifecycle, AMissingRecordingIsNamed) {
    makeWith(8);
    voices.remove(6);
    play();
    expectState(false, false);
    EXPECT_THAT(status(), testing::HasSubstr("6.wav"));
    EXPECT_THAT(status(), testing::Not(testing::HasSubstr("\n")));
}

TEST_F(Lifecycle, AFailedStartWhilePlayingEndsInSilence) {
    makeWith(2);
    play();
    hardware.createStatus = -50;
    play();
    expectState(false, false);
    EXPECT_EQ(hardware.registered(), 0U);
}

TEST_F(Lifecycle, AnOutputThatVanishesWhilePreparingIsAnError) {
    makeWith(2);
    model->start();
    hardware.removeDevice(7);
    elapse(*model);
    expectState(false, false);
    EXPECT_EQ(status(),
              "Read output streams failed (2003332927). Check that the output device is running.");
}

// Refreshing.

TEST_F(Lifecycle, ARefreshStopsAndKeepsASelectionThatIsStillThere) {
    hardware.addDevice(3, "Dante", {16}, 48000);
    hardware.addDevice(7, "Out", {16}, 48000);
    make();
    model->setSelected(7);
    play();
    model->setSolo(2);
    hardware.setBuffers(7, {4});
    model->refresh();
    expectState(false, false);
    EXPECT_EQ(status(), "Stopped.");
    EXPECT_EQ(hardware.registered(), 0U);
    EXPECT_EQ(model->outputs(), devices(hardware));
    EXPECT_EQ(model->selected(), 7U);
    EXPECT_THAT(range(), Pair(1, 4));
    EXPECT_EQ(model->solo(), 0);
}

TEST_F(Lifecycle, ARefreshWithoutTheSelectionTakesTheFirstAndPrefersNoName) {
    makeWith(16);
    hardware.removeDevice(7);
    hardware.addDevice(3, "Speakers", {2}, 48000);
    hardware.addDevice(4, "Dante", {64}, 48000);
    model->refresh();
    EXPECT_EQ(model->selected(), 3U);
    EXPECT_THAT(range(), Pair(1, 2));
}

TEST_F(Lifecycle, ARefreshWithoutOutputsChoosesNone) {
    makeWith(16);
    hardware.removeDevice(7);
    model->refresh();
    EXPECT_EQ(model->selected(), 0U);
    EXPECT_TRUE(model->outputs().empty());
    EXPECT_THAT(range(), Pair(1, 1));
}

TEST_F(Lifecycle, ARefreshStopsBeforeItAsksForTheOutputs) {
    makeWith(2);
    play();
    hardware.log.clear();
    model->refresh();
    EXPECT_THAT(hardware.log,
                ElementsAre("stop 7", "destroy 7", "size 1 dev# glob", "data 1 dev# glob 4",
                            "size 7 slay outp", "data 7 slay outp 24", "data 7 lnam glob 8",
                            "data 7 nsrt glob 8"));
}

TEST_F(Lifecycle, ARefreshWhilePreparingDoesNotCallTheStartBack) {
    makeWith(2);
    model->start();
    model->refresh();
    expectState(true, false);
    elapse(*model);
    expectState(false, true);
}

}
}
