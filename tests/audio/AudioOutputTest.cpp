#include "audio/AudioOutput.h"

#include "base/Error.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/VoicesFolder.h"
#include "tests/support/death.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <optional>

namespace tallyvox {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// Sample of channel `number` at an absolute frame, all together with -6 dB.
float expected(std::int64_t number, std::int64_t frame, std::int64_t cycle) {
    const auto voice = VoicesFolder::voice(number);
    const auto offset = static_cast<std::size_t>(frame % cycle);
    return offset < voice.size() ? voice[offset] * 0.50118720531463623F : 0.0F;
}

class AudioOutputTest : public testing::Test {
protected:
    static OutputDevice device(std::uint32_t id, std::int64_t channels, double rate = 48000) {
        return {id, "Out", channels, rate};
    }
    void start(const OutputDevice& on, double db = -6, double gap = 0) {
        output.emplace(hardware);
        restart(on, db, gap);
    }
    void restart(const OutputDevice& on, double db = -6, double gap = 0) {
        const auto count = static_cast<std::size_t>(std::max<std::int64_t>(on.channels, 0));
        output->start(on, std::vector<bool>(count, true), db, gap, false);
    }
    std::string failureOf(const OutputDevice& on) {
        try {
            restart(on);
            return "none";
        } catch (const Error& error) {
            return error.domain() + ' ' + std::to_string(error.code()) + ": " + error.what();
        }
    }
    void expectIdle() {
        EXPECT_EQ(output->proc(), std::nullopt);
        EXPECT_EQ(output->renderer(), nullptr);
        EXPECT_EQ(hardware.registered(), 0U);
    }

    VoicesFolder voices;
    FakeHardware hardware;
    std::optional<AudioOutput> output;
};

TEST_F(AudioOutputTest, StartsOutIdle) {
    output.emplace(hardware);
    expectIdle();
    EXPECT_EQ(output->device(), 0U);
    EXPECT_THAT(hardware.log, IsEmpty());
}

TEST_F(AudioOutputTest, ASuccessfulStartReadsThenRegistersThenStarts) {
    hardware.addDevice(7, "Out", {2}, 48000);
    start(device(7, 2));
    EXPECT_THAT(hardware.log, ElementsAre("size 7 stm# outp", "data 7 stm# outp 4",
                                          "data 7000 sfmt glob 40", "create 7", "start 7"));
    EXPECT_NE(output->proc(), std::nullopt);
    EXPECT_EQ(output->device(), 7U);
    ASSERT_NE(output->renderer(), nullptr);
    EXPECT_TRUE(hardware.running(7));
}

TEST_F(AudioOutputTest, EveryChannelHearsItsOwnVoice) {
    hardware.addDevice(7, "Out", {3, 1}, 48000);
    start(device(7, 4));
    const std::int64_t cycle = 8 + 4; // the longest voice, no gap
    EXPECT_EQ(output->renderer()->cycle(), cycle);
    std::int64_t frame = 0;
    for (const std::size_t frames : {5U, 1U, 64U, 17U}) {
        const auto channels = hardware.cycle(7, frames);
        ASSERT_EQ(channels.size(), 4U);
        for (std::size_t c = 0; c < 4; ++c) {
            for (std::size_t f = 0; f < frames; ++f)
                ASSERT_EQ(channels[c][f],
                          expected(std::int64_t(c) + 1, frame + std::int64_t(f), cycle))
                    << "channel " << c + 1 << " frame " << frame << '+' << f;
        }
        frame += std::int64_t(frames);
    }
}

TEST_F(AudioOutputTest, TheFlagsLevelGapAndModeReachTheRenderer) {
    hardware.addDevice(7, "Out", {2}, 48000);
    output.emplace(hardware);
    output->start(device(7, 2), {false, true}, -20, 0.75, true);
    const auto& renderer = *output->renderer();
    EXPECT_THAT(renderer.enabled(), ElementsAre(false, true));
    EXPECT_EQ(renderer.gain(), 0.1F);
    EXPECT_EQ(renderer.cycle(), 10 + 36000);
    EXPECT_TRUE(renderer.sequential());
    EXPECT_EQ(renderer.position(), 0);
    EXPECT_THAT(renderer.voices().at(1), ElementsAreArray(VoicesFolder::voice(2)));
}

TEST_F(AudioOutputTest, TheLevelIsTheNearestFloatOfTheDecibels) {
    hardware.addDevice(7, "Out", {1}, 48000);
    for (const auto& [db, gain] : std::vector<std::pair<double, float>>{
             {-6, 0.50118720531463623F}, {0, 1.0F}, {-20, 0.1F}, {-60, 0.001F}, {20, 10.0F}}) {
        start(device(7, 1), db);
        EXPECT_EQ(output->renderer()->gain(), gain) << db;
    }
}

TEST_F(AudioOutputTest, TheGapIsTruncatedToFrames) {
    for (const auto& [rate, gap, frames] :
         std::vector<std::tuple<double, double, std::int64_t>>{{48000, 0.75, 36000},
                                                               {44100, 0.3, 13230},
                                                               {44100, 0.7, 30869},
                                                               {48000, 0, 0},
                                                               {48000, -0.00001, 0}}) {
        hardware.addDevice(7, "Out", {1}, rate);
        start(device(7, 1, rate), -6, gap);
        const auto voice = static_cast<std::int64_t>(output->renderer()->voices()[0].size());
        EXPECT_EQ(output->renderer()->cycle(), voice + frames) << rate << ' ' << gap;
        output.reset();
        hardware.removeDevice(7);
    }
}

TEST_F(AudioOutputTest, AGapThatIsNoFrameCountStopsTheProcess) {
    hardware.addDevice(7, "Out", {1}, 48000);
    for (const double gap : {std::nan(""), HUGE_VAL, 1e300, 2e14, -2e14})
        EXPECT_SILENT_STOP(start(device(7, 1), -6, gap));
}

TEST_F(AudioOutputTest, ADeviceWithoutChannelsStopsTheProcess) {
    hardware.addDevice(7, "Out", {1}, 48000);
    EXPECT_SILENT_STOP(start(device(7, 0)));
    EXPECT_SILENT_STOP(start(device(7, -1)));
}

TEST_F(AudioOutputTest, NoRateIsRefusedBeforeTheDeviceIsAsked) {
    hardware.addDevice(7, "Out", {2}, 48000);
    output.emplace(hardware);
    for (const double rate : {0.0, -48000.0, std::nan("")}) {
        EXPECT_EQ(failureOf(device(7, 2, rate)), "Audio 1: Output has no valid sample rate.");
        expectIdle();
    }
    EXPECT_THAT(hardware.log, IsEmpty());
}

TEST_F(AudioOutputTest, ARefusedStartHasStoppedWhatPlayed) {
    hardware.addDevice(7, "Out", {2}, 48000);
    start(device(7, 2));
    hardware.log.clear();
    EXPECT_EQ(failureOf(device(7, 2, 0)), "Audio 1: Output has no valid sample rate.");
    EXPECT_THAT(hardware.log, ElementsAre("stop 7", "destroy 7"));
    expectIdle();
    EXPECT_EQ(output->device(), 7U);
}

TEST_F(AudioOutputTest, StartingElsewhereStopsOnTheOldDeviceFirst) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.addDevice(8, "Next", {2}, 48000);
    start(device(7, 2));
    hardware.log.clear();
    restart(device(8, 2));
    EXPECT_THAT(hardware.log,
                ElementsAre("stop 7", "destroy 7", "size 8 stm# outp", "data 8 stm# outp 4",
                            "data 8000 sfmt glob 40", "create 8", "start 8"));
    EXPECT_FALSE(hardware.running(7));
    EXPECT_TRUE(hardware.running(8));
    EXPECT_EQ(output->device(), 8U);
}

TEST_F(AudioOutputTest, ARestartBeginsAtTheFirstFrame) {
    hardware.addDevice(7, "Out", {1}, 48000);
    start(device(7, 1));
    const auto first = hardware.cycle(7, 5);
    restart(device(7, 1));
    EXPECT_EQ(hardware.cycle(7, 5), first);
}

TEST_F(AudioOutputTest, WhatWasGivenIsPlayedWhenTheDeviceAsksAgain) {
    hardware.addDevice(7, "Out", {2, 1}, 48000);
    start(device(7, 3));
    EXPECT_EQ(output->played(), 0);
    std::int64_t given = 0;
    // More than the one cycle of the voices, after which the renderer's position begins anew.
    for (const std::size_t frames : {5U, 0U, 64U, 17U}) {
        hardware.cycle(7, frames);
        EXPECT_EQ(output->played(), given);
        given += std::int64_t(frames);
    }
    output->stop();
    EXPECT_EQ(output->played(), 69);
    restart(device(7, 3));
    EXPECT_EQ(output->played(), 0);
}

TEST_F(AudioOutputTest, ALateCallDoesNotCountForTheNextAnnouncement) {
    hardware.addDevice(7, "Out", {1}, 48000);
    start(device(7, 1));
    hardware.cycle(7, 32);
    const auto late = hardware.callback(7);
    restart(device(7, 1));
    OwnedBufferList list({1});
    late(list.get());
    EXPECT_EQ(output->played(), 0);
}

TEST_F(AudioOutputTest, A192ChannelDeviceGets128Voices) {
    voices.fillUpTo(128);
    hardware.addDevice(7, "Out", {192}, 48000);
    start(device(7, 192));
    EXPECT_EQ(output->renderer()->voices().size(), 128U);
    EXPECT_EQ(output->renderer()->enabled().size(), 128U);
    const auto channels = hardware.cycle(7, 200);
    EXPECT_THAT(std::vector(channels.begin() + 128, channels.end()), Each(Each(0.0F)));
    EXPECT_EQ(channels[127][2], -0.50118720531463623F);
}

TEST_F(AudioOutputTest, MissingFlagsAreHandedOnAndStopTheFirstCycle) {
    hardware.addDevice(7, "Out", {3}, 48000);
    output.emplace(hardware);
    output->start(device(7, 3), {true, true}, -6, 0, false);
    EXPECT_THAT(output->renderer()->enabled(), ElementsAre(true, true));
    EXPECT_SILENT_STOP(hardware.cycle(7, 16));
}

TEST_F(AudioOutputTest, TheVoicesAreAtTheDevicesRate) {
    hardware.addDevice(7, "Out", {1}, 96000);
    start(device(7, 1, 96000));
    const auto& voice = output->renderer()->voices()[0];
    const auto source = VoicesFolder::voice(1);
    ASSERT_EQ(voice.size(), 2 * source.size());
    EXPECT_EQ(voice[4], source[2]);
    EXPECT_EQ(voice[5], (source[2] + source[3]) / 2);
}

TEST_F(AudioOutputTest, AMissingRecordingIsThrownUnchangedAndNothingIsRegistered) {
    hardware.addDevice(7, "Out", {8}, 48000);
    voices.remove(5);
    output.emplace(hardware);
    EXPECT_THAT(failureOf(device(7, 8)), testing::HasSubstr("5.wav"));
    EXPECT_THAT(hardware.streamLog(), IsEmpty());
    expectIdle();
    EXPECT_EQ(output->device(), 0U);
    EXPECT_EQ(failureOf(device(7, 4)), "none");
}

TEST_F(AudioOutputTest, AFailedRegistrationKeepsTheRendererUntilTheNextStop) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.createStatus = -66681;
    output.emplace(hardware);
    EXPECT_EQ(failureOf(device(7, 2)), "Audio -66681: Open output failed (-66681). Check that the "
                                       "output device is running.");
    EXPECT_EQ(output->proc(), std::nullopt);
    EXPECT_NE(output->renderer(), nullptr);
    EXPECT_EQ(output->device(), 7U);
    EXPECT_THAT(hardware.streamLog(), ElementsAre("create 7"));
    output->stop();
    expectIdle();
    EXPECT_THAT(hardware.streamLog(), ElementsAre("create 7"));
}

TEST_F(AudioOutputTest, AFailedStartOfTheDeviceLeavesItIdle) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.startStatus = kAudioHardwareNotRunningError;
    output.emplace(hardware);
    EXPECT_EQ(failureOf(device(7, 2)), "Audio 1937010544: Start output failed (1937010544). Check "
                                       "that the output device is running.");
    EXPECT_THAT(hardware.streamLog(), ElementsAre("create 7", "start 7", "stop 7", "destroy 7"));
    expectIdle();
    EXPECT_EQ(output->device(), 7U);
}

TEST_F(AudioOutputTest, TheResultsOfStoppingAreIgnored) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.stopStatus = kAudioHardwareBadDeviceError;
    hardware.destroyStatus = kAudioHardwareBadDeviceError;
    start(device(7, 2));
    output->stop();
    expectIdle();
    EXPECT_THAT(hardware.streamLog(), ElementsAre("create 7", "start 7", "stop 7", "destroy 7"));
}

TEST_F(AudioOutputTest, StoppingBeforeAnyStartAndTwiceIsHarmless) {
    hardware.addDevice(7, "Out", {2}, 48000);
    output.emplace(hardware);
    output->stop();
    EXPECT_THAT(hardware.log, IsEmpty());
    restart(device(7, 2));
    output->stop();
    output->stop();
    EXPECT_THAT(hardware.streamLog(), ElementsAre("create 7", "start 7", "stop 7", "destroy 7"));
    expectIdle();
}

TEST_F(AudioOutputTest, StoppingKeepsTheDevicesId) {
    hardware.addDevice(7, "Out", {2}, 48000);
    start(device(7, 2));
    output->stop();
    EXPECT_EQ(output->device(), 7U);
}

TEST_F(AudioOutputTest, TheRendererLivesUntilTheDeviceHasStopped) {
    hardware.addDevice(7, "Out", {2}, 48000);
    start(device(7, 2));
    const std::weak_ptr<Renderer> renderer = output->renderer();
    std::vector<bool> aliveAt;
    hardware.before = [&](const std::string&) { aliveAt.push_back(!renderer.expired()); };
    output->stop();
    EXPECT_THAT(aliveAt, ElementsAre(true, true));
    EXPECT_TRUE(renderer.expired());
}

TEST_F(AudioOutputTest, ReleasingItStopsBeforeItUnregisters) {
    hardware.addDevice(7, "Out", {2}, 48000);
    start(device(7, 2));
    const std::weak_ptr<Renderer> renderer = output->renderer();
    hardware.log.clear();
    output.reset();
    EXPECT_THAT(hardware.log, ElementsAre("stop 7", "destroy 7"));
    EXPECT_EQ(hardware.registered(), 0U);
    EXPECT_TRUE(renderer.expired());
}

TEST_F(AudioOutputTest, ACallThatComesLateFindsItsRenderer) {
    hardware.addDevice(7, "Out", {1}, 48000);
    start(device(7, 1));
    const auto late = hardware.callback(7);
    const std::weak_ptr<Renderer> renderer = output->renderer();
    output.reset();
    ASSERT_FALSE(renderer.expired());
    OwnedBufferList list({1});
    std::vector<float> samples(4, 99);
    list.buffers()[0].mData = samples.data();
    list.buffers()[0].mDataByteSize = 16;
    late(list.get());
    EXPECT_EQ(samples[2], -0.50118720531463623F);
}

TEST_F(AudioOutputTest, ASwitchedOffStreamsNullDataIsLeftAlone) {
    hardware.addDevice(7, "Out", {1, 1}, 48000);
    start(device(7, 2));
    OwnedBufferList list({1, 1});
    std::vector<float> samples(4, 99);
    list.buffers()[0].mDataByteSize = 16;
    list.buffers()[1].mData = samples.data();
    list.buffers()[1].mDataByteSize = 16;
    hardware.call(7, list.get());
    for (std::int64_t frame = 0; frame < 4; ++frame)
        EXPECT_EQ(samples[std::size_t(frame)], expected(2, frame, 10));
    EXPECT_EQ(output->renderer()->position(), 4);
}

TEST_F(AudioOutputTest, ADeviceThatVanishesAtAnyCallEndsInAnErrorOrIdle) {
    for (const auto* moment :
         {"size 7 stm# outp", "data 7 stm# outp 4", "create 7", "start 7", "stop 7", "destroy 7"}) {
        hardware.before = nullptr;
        hardware.addDevice(7, "Out", {2}, 48000);
        hardware.createStatus = hardware.startStatus = 0;
        hardware.before = [&](const std::string& line) {
            if (line == moment) {
                hardware.removeDevice(7);
                hardware.createStatus = hardware.startStatus = kAudioHardwareBadDeviceError;
            }
        };
        output.emplace(hardware);
        failureOf(device(7, 2));
        output->stop();
        expectIdle();
        hardware.removeDevice(7);
    }
}

}
}
