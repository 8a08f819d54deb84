#include "audio/AudioOutput.h"

#include "audio/SystemReport.h"
#include "audio/devices.h"
#include "base/Error.h"
#include "engine/Environment.h"
#include "engine/voices.h"
#include "tests/macos/FakeCoreAudio.h"
#include "tests/support/VoicesFolder.h"

#include <gmock/gmock.h>

#include <cstring>
#include <thread>

namespace tallyvox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto inputScope = kAudioObjectPropertyScopeInput;

/// The program on the double of the system's audio functions, through the very layer that a Mac
/// gets.
class CoreAudioTest : public testing::Test {
protected:
    static OutputDevice device(std::int64_t channels) { return {7, "Out", channels, 48000}; }
    void start(std::int64_t channels, double gap = 0) {
        output.start(device(channels), std::vector<bool>(std::size_t(channels), true), -6, gap,
                     false);
    }
    std::string failure() {
        try {
            start(2);
            return "none";
        } catch (const Error& error) {
            return error.what();
        }
    }
    /// A device with inputs beside its outputs: a use of `streams` input streams can be read.
    void addInputs(std::uint32_t streams) {
        std::vector<std::uint32_t> record{0, 0, streams};
        record.insert(record.end(), streams, 1);
        system.hardware.setValue(7, kAudioDevicePropertyIOProcStreamUsage, inputScope, record);
    }
    std::vector<std::uint32_t> inputUsage() {
        const auto& value =
            system.hardware.property(7, kAudioDevicePropertyIOProcStreamUsage, inputScope).value;
        std::vector<std::uint32_t> record(value.size() / 4);
        std::memcpy(record.data(), value.data(), record.size() * 4);
        return record;
    }

    VoicesFolder voices;
    FakeCoreAudio system;
    AudioOutput output;
};

TEST_F(CoreAudioTest, TheOutputsAreListedWithTheirNames) {
    system.hardware.addDevice(70, "Dante Virtual Soundcard", {64}, 48000);
    system.hardware.addDevice(41, "Größe 出力 🔊", {1, 1}, 44100);
    system.hardware.addDevice(50, "Microphone", {}, 48000);
    EXPECT_THAT(devices(), ElementsAre(OutputDevice{70, "Dante Virtual Soundcard", 64, 48000},
                                       OutputDevice{41, "Größe 出力 🔊", 2, 44100}));
}

TEST_F(CoreAudioTest, AnEmptyNameAndALongOneArriveWhole) {
    const std::string longest(1000, 'x');
    system.hardware.addDevice(1000, "", {2}, 48000);
    system.hardware.addDevice(1001, longest, {2}, 48000);
    EXPECT_EQ(devices().at(0).name, "");
    EXPECT_EQ(devices().at(1).name, longest);
}

TEST_F(CoreAudioTest, ANameWithAZeroCharacterArrivesWhole) {
    const std::string name("a\0b", 3);
    system.hardware.addDevice(7, name, {2}, 48000);
    EXPECT_EQ(devices().at(0).name, name);
}

TEST_F(CoreAudioTest, AGoneDeviceThatIsStillListedIsLeftOut) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    system.hardware.removeDevice(7);
    system.hardware.setDevices({7, 9});
    EXPECT_THAT(devices(), IsEmpty());
}

TEST_F(CoreAudioTest, AnAggregateOfSeveralStreamsIsOneOutput) {
    voices.fillUpTo(76);
    system.hardware.addDevice(7, "Aggregate", {2, 8, 1, 1, 64}, 48000);
    EXPECT_EQ(devices().at(0).channels, 76);
    start(76);
    const auto channels = system.hardware.cycle(7, 100);
    for (std::int64_t c = 1; c <= 76; ++c) {
        const auto voice = VoicesFolder::voice(c);
        for (std::size_t f = 0; f < 84; ++f)
            ASSERT_EQ(channels[std::size_t(c - 1)][f],
                      f < voice.size() ? voice[f] * 0.50118720531463623F : 0.0F)
                << "channel " << c << " frame " << f;
    }
}

TEST_F(CoreAudioTest, AnAnnouncementIsSampleExactOverCyclesOfAnyLength) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    start(2, 0.001);
    const auto voice = VoicesFolder::voice(2);
    std::size_t frame = 0;
    for (const std::size_t frames : {512U, 1U, 15U, 4096U, 441U}) {
        const auto channels = system.hardware.cycle(7, frames);
        for (std::size_t f = 0; f < frames; ++f) {
            const std::size_t offset = (frame + f) % (10 + 48);
            ASSERT_EQ(channels[1][f],
                      offset < voice.size() ? voice[offset] * 0.50118720531463623F : 0.0F)
                << frame + f;
        }
        frame += frames;
    }
}

TEST_F(CoreAudioTest, TheFormatIsCheckedThroughTheSystem) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    auto format = FakeHardware::floatFormat(2, 44100);
    system.hardware.setFormat(FakeHardware::streamId(7, 0), format);
    EXPECT_THAT(failure(), testing::StartsWith("This output does not expose native 32-bit float"));
    format.mSampleRate = 48000.5;
    system.hardware.setFormat(FakeHardware::streamId(7, 0), format);
    EXPECT_EQ(failure(), "none");
}

TEST_F(CoreAudioTest, TheCallbackLivesFromItsRegistrationToItsEnd) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    start(2);
    const std::weak_ptr<Renderer> renderer = output.renderer();
    EXPECT_EQ(FakeCoreAudio::blocks(), 1);
    std::vector<bool> aliveAt;
    system.hardware.before = [&](const std::string&) { aliveAt.push_back(!renderer.expired()); };
    output.stop();
    EXPECT_THAT(aliveAt, ElementsAre(true, true));
    EXPECT_EQ(FakeCoreAudio::blocks(), 0);
    EXPECT_TRUE(renderer.expired());
}

TEST_F(CoreAudioTest, AFailedRegistrationHoldsNoCallback) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    system.hardware.createStatus = kAudioHardwareBadDeviceError;
    EXPECT_EQ(failure(),
              "Open output failed (560227702). Check that the output device is running.");
    EXPECT_EQ(FakeCoreAudio::blocks(), 0);
    EXPECT_EQ(output.proc(), std::nullopt);
}

TEST_F(CoreAudioTest, AFailedStartReleasesTheCallback) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    system.hardware.startStatus = kAudioHardwareNotRunningError;
    EXPECT_EQ(failure(),
              "Start output failed (1937010544). Check that the output device is running.");
    EXPECT_EQ(FakeCoreAudio::blocks(), 0);
    EXPECT_THAT(system.hardware.streamLog(),
                ElementsAre("create 7", "start 7", "stop 7", "destroy 7"));
}

TEST_F(CoreAudioTest, CallsThatComeLateFindEverythingAlive) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    system.stopping = FakeCoreAudio::Stopping::late;
    start(2);
    const std::weak_ptr<Renderer> renderer = output.renderer();
    output.stop();
    EXPECT_EQ(system.lateCalls, 2);
    EXPECT_TRUE(renderer.expired());
    EXPECT_EQ(FakeCoreAudio::blocks(), 0);
}

TEST_F(CoreAudioTest, ACallbackThatRunsOnItsOwnThreadThroughTheStopIsSafe) {
    system.hardware.addDevice(7, "Out", {2}, 48000);
    for (int i = 0; i < 20; ++i) {
        start(2);
        auto callback = system.hardware.callback(7); // as the system's thread holds it
        std::atomic<int> calls = 0;
        std::atomic<bool> ended = false;
        std::thread device([&, callback = std::move(callback)] {
            OwnedBufferList list({2});
            std::vector<float> samples(128);
            list.buffers()[0].mData = samples.data();
            list.buffers()[0].mDataByteSize = 512;
            while (!ended) {
                callback(list.get());
                ++calls;
            }
            callback(list.get());
        });
        while (calls < 10)
            std::this_thread::yield();
        output.stop();
        ended = true;
        device.join();
    }
    EXPECT_EQ(FakeCoreAudio::blocks(), 0);
}

TEST_F(CoreAudioTest, ASwitchedOffStreamsNullDataIsLeftAlone) {
    system.hardware.addDevice(7, "Out", {1, 1}, 48000);
    start(2);
    OwnedBufferList list({1, 1});
    std::vector<float> samples(4, 99);
    list.buffers()[0].mDataByteSize = 16;
    list.buffers()[1].mData = samples.data();
    list.buffers()[1].mDataByteSize = 16;
    system.hardware.call(7, list.get());
    EXPECT_EQ(samples[2], -0.50118720531463623F);
    EXPECT_EQ(output.renderer()->position(), 4);
}

TEST_F(CoreAudioTest, TheInputsAreSwitchedOffBeforeTheDeviceStarts) {
    system.hardware.addDevice(7, "Virtual card", {2}, 48000);
    addInputs(3);
    start(2);
    EXPECT_THAT(system.hardware.log,
                testing::IsSupersetOf(
                    {"create 7", "size 7 suse inpt", "data 7 suse inpt 24", "set 7", "start 7"}));
    EXPECT_THAT(system.hardware.streamLog(), ElementsAre("create 7", "set 7", "start 7"));
    const auto record = inputUsage();
    ASSERT_EQ(record.size(), 6U);
    void* proc = nullptr;
    std::memcpy(&proc, record.data(), sizeof proc);
    EXPECT_EQ(proc, output.proc());
    EXPECT_THAT(std::vector(record.begin() + 2, record.end()), ElementsAre(3, 0, 0, 0));
}

TEST_F(CoreAudioTest, AManyStreamedInputIsSwitchedOffWhole) {
    system.hardware.addDevice(7, "Virtual card", {2}, 48000);
    addInputs(200);
    start(2);
    const auto record = inputUsage();
    EXPECT_THAT(std::vector(record.begin() + 3, record.end()), testing::Each(0U));
    EXPECT_EQ(record.size(), 203U);
}

TEST_F(CoreAudioTest, AnInputUsageOfOddLengthIsWrittenWithinItsBounds) {
    for (const std::uint32_t stated : {0U, 4U, 12U, 13U, 16U, 18U, 40U}) {
        FakeHardware& hardware = system.hardware;
        hardware.addDevice(7, "Virtual card", {2}, 48000);
        addInputs(2);
        hardware.property(7, kAudioDevicePropertyIOProcStreamUsage, inputScope).statedSize = stated;
        EXPECT_EQ(failure(), "none") << stated;
        output.stop();
        hardware.removeDevice(7);
    }
}

TEST_F(CoreAudioTest, InputsThatCannotBeReadDoNotMatter) {
    system.hardware.addDevice(7, "Virtual card", {2}, 48000);
    addInputs(1);
    system.hardware.property(7, kAudioDevicePropertyIOProcStreamUsage, inputScope).dataStatus = -1;
    EXPECT_EQ(failure(), "none");
    EXPECT_THAT(system.hardware.streamLog(), ElementsAre("create 7", "start 7"));
}

TEST_F(CoreAudioTest, ADeviceMayVanishAtEveryCall) {
    const auto scenario = [this] {
        devices();
        failure();
        devices();
        output.stop();
    };
    system.hardware.addDevice(7, "Out", {2}, 48000);
    addInputs(2);
    scenario();
    const std::size_t calls = system.hardware.log.size();
    ASSERT_GT(calls, 15U);
    for (std::size_t moment = 0; moment < calls; ++moment) {
        system.hardware.removeDevice(7);
        system.hardware.addDevice(7, "Out", {2}, 48000);
        addInputs(2);
        system.hardware.createStatus = system.hardware.startStatus = 0;
        std::size_t call = 0;
        system.hardware.before = [&](const std::string&) {
            if (call++ == moment) {
                system.hardware.removeDevice(7);
                system.hardware.createStatus = system.hardware.startStatus =
                    kAudioHardwareBadDeviceError;
            }
        };
        scenario();
        system.hardware.before = nullptr;
        EXPECT_EQ(FakeCoreAudio::blocks(), 0) << moment;
        EXPECT_EQ(output.proc(), std::nullopt) << moment;
    }
}

TEST_F(CoreAudioTest, ShorterAnswersAreRead) {
    system.hardware.addDevice(7, "Out", {2, 2}, 48000);
    auto& configuration = system.hardware.property(7, kAudioDevicePropertyStreamConfiguration,
                                                   kAudioObjectPropertyScopeOutput);
    configuration.statedSize = 40;
    configuration.value.resize(24);
    EXPECT_EQ(devices().at(0).channels, 2);
    system.hardware.property(kAudioObjectSystemObject, kAudioHardwarePropertyDevices).statedSize =
        400;
    EXPECT_EQ(devices().size(), 1U);
}

TEST_F(CoreAudioTest, TheReportSaysWhetherTheServiceAnswers) {
    EXPECT_EQ(systemReport().layers.at(0).name, "coreaudio");
    EXPECT_TRUE(systemReport().layers.at(0).answers);
    EXPECT_TRUE(systemReport().realtime);
    system.hardware.property(kAudioObjectSystemObject, kAudioHardwarePropertyDevices).sizeStatus =
        -1;
    EXPECT_FALSE(systemReport().layers.at(0).answers);
}

TEST(Bundle, ItsResourcesHoldTheRecordings) {
    const VoicesFolder voices;
    EXPECT_EQ(resourceFolder(), VoicesFolder::current());
    EXPECT_EQ(voiceRoot(), *VoicesFolder::current() / "Voices");
}

TEST(Bundle, WithoutRecordingsTheFolderLiesBesideTheProgram) {
    EXPECT_EQ(resourceFolder(), std::nullopt);
    EXPECT_EQ(voiceRoot(),
              "/Applications/Tallyvox.app/Contents/MacOS/Tallyvox.app/Contents/Resources/Voices");
    const VoicesFolder voices;
    voices.remove(1);
    EXPECT_EQ(voiceRoot().filename(), "Voices");
    EXPECT_NE(voiceRoot().parent_path(), *VoicesFolder::current());
}

TEST(Bundle, TheArgumentsAreTheProcesss) {
    EXPECT_THAT(arguments(),
                ElementsAre("/Applications/Tallyvox.app/Contents/MacOS/Tallyvox", "--devices"));
}

}
}
