#include "platform/common/PropertyServer.h"

#include "engine/AudioBufferList.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

namespace tallyvox {
namespace {

constexpr std::uint32_t kGlobal = kAudioObjectPropertyScopeGlobal;
constexpr std::uint32_t kOutput = kAudioObjectPropertyScopeOutput;

struct Service {
    std::optional<std::vector<DeviceRecord>> devices;
    std::vector<std::string> log;
    std::int32_t openStatus = 0;
    std::int32_t startStatus = 0;
    Hardware::IOCallback callback;
};

class ScriptedStream : public Stream {
public:
    ScriptedStream(Service& service, std::uint64_t xruns) : service_(service), xruns_(xruns) {}
    ~ScriptedStream() override { service_.log.emplace_back("release"); }
    std::int32_t start() override {
        service_.log.emplace_back("start");
        return service_.startStatus;
    }
    void stop() override { service_.log.emplace_back("stop"); }
    std::uint64_t xruns() const noexcept override { return xruns_; }

private:
    Service& service_;
    std::uint64_t xruns_;
};

class ScriptedLayer : public Layer {
public:
    ScriptedLayer(std::string name, Service& service) : name_(std::move(name)), service_(service) {}
    std::string_view name() const override { return name_; }
    std::optional<std::vector<DeviceRecord>> devices() override {
        service_.log.emplace_back("devices");
        return service_.devices;
    }
    std::int32_t open(std::uint32_t, Hardware::IOCallback callback,
                      std::unique_ptr<Stream>& stream) override {
        if (service_.openStatus != 0)
            return service_.openStatus;
        service_.callback = std::move(callback);
        stream = std::make_unique<ScriptedStream>(service_, 7);
        return 0;
    }

private:
    std::string name_;
    Service& service_;
};

class PropertyServerTest : public ::testing::Test {
protected:
    void SetUp() override {
        first.devices = {{10, "Ten", {1, 1, 1}, 44100.0}, {11, "Elf \u00e9", {8}, 47952.5}};
        second.devices = {{20, "Twenty", {32, 32}, 0.0}};
    }

    std::vector<std::byte> read(std::uint32_t object, std::uint32_t selector, std::uint32_t scope,
                                std::uint32_t room = 4096) {
        std::vector<std::byte> data(room, std::byte{0xAA});
        std::uint32_t bytes = room;
        status = server.propertyData(object, {selector, scope, 0}, bytes, data.data());
        data.resize(status == 0 ? bytes : 0);
        return data;
    }

    template<class T>
    std::vector<T> items(std::uint32_t object, std::uint32_t selector, std::uint32_t scope,
                         std::uint32_t room = 4096) {
        const auto data = read(object, selector, scope, room);
        std::vector<T> values(data.size() / sizeof(T));
        if (!values.empty())
            std::memcpy(values.data(), data.data(), values.size() * sizeof(T));
        return values;
    }

    std::vector<std::uint32_t> ids() {
        return items<std::uint32_t>(kAudioObjectSystemObject, kAudioHardwarePropertyDevices,
                                    kGlobal);
    }

    std::string text(std::uint32_t object, std::uint32_t selector) {
        const auto references = items<const void*>(object, selector, kGlobal);
        return references.empty() ? "(none)" : server.takeString(references.front());
    }

    std::uint32_t size(std::uint32_t object, std::uint32_t selector, std::uint32_t scope) {
        std::uint32_t bytes = 0;
        status = server.propertyDataSize(object, {selector, scope, 0}, bytes);
        return bytes;
    }

    static std::vector<std::unique_ptr<Layer>>
    layers(std::initializer_list<std::pair<const char*, Service*>> list) {
        std::vector<std::unique_ptr<Layer>> made;
        for (const auto& [name, service] : list)
            made.push_back(std::make_unique<ScriptedLayer>(name, *service));
        return made;
    }

    Service first, second, last;
    PropertyServer server{layers({{"one", &first}, {"two", &second}}), layers({{"last", &last}})};
    std::int32_t status = 0;
};

TEST_F(PropertyServerTest, ARateBeyondAllDevicesIsToldAsNone) {
    for (const double rate :
         {1000001.0, 4294967295.0, 1e300, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        first.devices->front().rate = rate;
        EXPECT_EQ(items<double>(10, kAudioDevicePropertyNominalSampleRate, kGlobal),
                  std::vector{0.0});
    }
    first.devices->front().rate = 1e6;
    EXPECT_EQ(items<double>(10, kAudioDevicePropertyNominalSampleRate, kGlobal), std::vector{1e6});
}

TEST_F(PropertyServerTest, DevicesAreListedLayerByLayer) {
    EXPECT_EQ(ids(), (std::vector<std::uint32_t>{10, 11, 20}));
    EXPECT_EQ(size(kAudioObjectSystemObject, kAudioHardwarePropertyDevices, kGlobal), 12U);
}

TEST_F(PropertyServerTest, AServerThatIsAwayHidesOnlyItsOwnDevices) {
    first.devices.reset();
    EXPECT_EQ(ids(), (std::vector<std::uint32_t>{20}));
}

TEST_F(PropertyServerTest, HardwareIsListedOnlyWhenNoServerAnswers) {
    last.devices = {{30, "Hardware", {2}, 48000.0}};
    EXPECT_EQ(ids(), (std::vector<std::uint32_t>{10, 11, 20}));
    first.devices = std::vector<DeviceRecord>{};
    second.devices.reset();
    EXPECT_TRUE(ids().empty());
    first.devices.reset();
    EXPECT_EQ(ids(), (std::vector<std::uint32_t>{30}));
}

TEST_F(PropertyServerTest, HardwareIsAskedForADeviceOnlyWhenNoServerAnswers) {
    last.devices = {{30, "Hardware", {2}, 48000.0}};
    EXPECT_EQ(text(30, kAudioObjectPropertyName), "(none)");
    EXPECT_TRUE(last.log.empty());
    first.devices.reset();
    second.devices.reset();
    EXPECT_EQ(text(30, kAudioObjectPropertyName), "Hardware");
}

TEST_F(PropertyServerTest, HardwareThatPlaysKeepsItsPropertiesWhenAServerComesUp) {
    last.devices = {{30, "Hardware", {2}, 48000.0}};
    first.devices.reset();
    second.devices.reset();
    Hardware::IOProcId proc = nullptr;
    ASSERT_EQ(server.createIOProc(
                  30, [](AudioBufferList*) {}, proc),
              0);
    first.devices = std::vector<DeviceRecord>{};
    EXPECT_EQ(text(30, kAudioObjectPropertyName), "Hardware");
    EXPECT_TRUE(ids().empty());
    EXPECT_EQ(server.destroyIOProc(30, proc), 0);
}

TEST_F(PropertyServerTest, NothingThatAnswersIsAnEmptyList) {
    first.devices.reset();
    second.devices.reset();
    EXPECT_TRUE(ids().empty());
    EXPECT_EQ(status, 0);
    EXPECT_EQ(size(kAudioObjectSystemObject, kAudioHardwarePropertyDevices, kGlobal), 0U);
    EXPECT_EQ(status, 0);
}

TEST_F(PropertyServerTest, TheDeviceListIsCutBetweenIds) {
    EXPECT_EQ(
        items<std::uint32_t>(kAudioObjectSystemObject, kAudioHardwarePropertyDevices, kGlobal, 11),
        (std::vector<std::uint32_t>{10, 11}));
}

TEST_F(PropertyServerTest, TheConfigurationHasTheDevicesBuffers) {
    ASSERT_EQ(size(20, kAudioDevicePropertyStreamConfiguration, kOutput), 40U);
    const auto data = read(20, kAudioDevicePropertyStreamConfiguration, kOutput, 40);
    ASSERT_EQ(data.size(), 40U);
    std::vector<std::uint64_t> aligned(5);
    std::memcpy(aligned.data(), data.data(), data.size());
    const auto* list = reinterpret_cast<const AudioBufferList*>(aligned.data());
    ASSERT_EQ(list->mNumberBuffers, 2U);
    for (const AudioBuffer& buffer : buffers(*list)) {
        EXPECT_EQ(buffer.mNumberChannels, 32U);
        EXPECT_EQ(buffer.mDataByteSize, 0U);
        EXPECT_EQ(buffer.mData, nullptr);
    }
}

TEST_F(PropertyServerTest, AConfigurationThatDoesNotFitIsRefused) {
    EXPECT_TRUE(read(20, kAudioDevicePropertyStreamConfiguration, kOutput, 39).empty());
    EXPECT_EQ(status, kAudioHardwareBadPropertySizeError);
}

TEST_F(PropertyServerTest, NamesAreHandedOverOnce) {
    EXPECT_EQ(text(11, kAudioObjectPropertyName), "Elf \u00e9");
    EXPECT_EQ(size(11, kAudioObjectPropertyName, kGlobal), sizeof(void*));
    EXPECT_TRUE(read(11, kAudioObjectPropertyName, kGlobal, 7).empty());
    EXPECT_EQ(status, kAudioHardwareBadPropertySizeError);
    EXPECT_EQ(server.takeString(nullptr), "");
}

TEST_F(PropertyServerTest, EveryDeviceTellsItsLayer) {
    EXPECT_EQ(text(10, kDevicePropertyLayer), "one");
    EXPECT_EQ(text(20, kDevicePropertyLayer), "two");
}

TEST_F(PropertyServerTest, RatesAreExact) {
    const auto rate = kAudioDevicePropertyNominalSampleRate;
    EXPECT_EQ(items<double>(10, rate, kGlobal), std::vector<double>{44100.0});
    EXPECT_EQ(items<double>(11, rate, kGlobal), std::vector<double>{47952.5});
    EXPECT_EQ(items<double>(20, rate, kGlobal), std::vector<double>{0.0});
}

TEST_F(PropertyServerTest, OneStreamDescribesSplitBuffers) {
    const auto streams = items<std::uint32_t>(10, kAudioDevicePropertyStreams, kOutput);
    ASSERT_EQ(streams.size(), 1U);
    const auto formats = items<AudioStreamBasicDescription>(
        streams.front(), kAudioStreamPropertyVirtualFormat, kGlobal);
    ASSERT_EQ(formats.size(), 1U);
    const auto& format = formats.front();
    EXPECT_EQ(format.mSampleRate, 44100.0);
    EXPECT_EQ(format.mFormatID, kAudioFormatLinearPCM);
    EXPECT_EQ(format.mFormatFlags, kAudioFormatFlagIsFloat | kAudioFormatFlagIsNonInterleaved);
    EXPECT_EQ(format.mBytesPerFrame, 4U);
    EXPECT_EQ(format.mChannelsPerFrame, 3U);
    EXPECT_EQ(format.mBitsPerChannel, 32U);
}

TEST_F(PropertyServerTest, OneStreamDescribesAnInterleavedBuffer) {
    const auto formats =
        items<AudioStreamBasicDescription>(11, kAudioStreamPropertyVirtualFormat, kGlobal);
    ASSERT_EQ(formats.size(), 1U);
    EXPECT_EQ(formats.front().mFormatFlags, kAudioFormatFlagIsFloat);
    EXPECT_EQ(formats.front().mBytesPerFrame, 32U);
    EXPECT_EQ(formats.front().mChannelsPerFrame, 8U);
}

TEST_F(PropertyServerTest, UnknownQuestionsAreAnsweredByAStatus) {
    read(99, kAudioDevicePropertyNominalSampleRate, kGlobal);
    EXPECT_EQ(status, kAudioHardwareBadObjectError);
    read(10, 0x12345678, kGlobal);
    EXPECT_EQ(status, kAudioHardwareUnknownPropertyError);
    read(10, kAudioDevicePropertyStreamConfiguration, 0x696E7074);
    EXPECT_EQ(status, kAudioHardwareUnknownPropertyError);
    EXPECT_EQ(text(99, kAudioObjectPropertyName), "(none)");
}

TEST_F(PropertyServerTest, AValueIsTheLayersAtTheTimeOfTheQuery) {
    EXPECT_EQ(size(11, kAudioDevicePropertyStreamConfiguration, kOutput), 24U);
    first.devices->at(1).buffers = {8, 8, 8};
    EXPECT_TRUE(read(11, kAudioDevicePropertyStreamConfiguration, kOutput, 24).empty());
    EXPECT_EQ(status, kAudioHardwareBadPropertySizeError);
    first.devices->pop_back();
    read(11, kAudioDevicePropertyNominalSampleRate, kGlobal);
    EXPECT_EQ(status, kAudioHardwareBadObjectError);
}

TEST_F(PropertyServerTest, ACallbackLivesFromItsRegistrationToItsRelease) {
    Hardware::IOProcId proc = nullptr;
    int calls = 0;
    ASSERT_EQ(server.createIOProc(
                  10, [&](AudioBufferList*) { ++calls; }, proc),
              0);
    ASSERT_NE(proc, nullptr);
    first.callback(nullptr);
    EXPECT_EQ(calls, 1);
    first.log.clear();
    EXPECT_EQ(server.startDevice(10, proc), 0);
    EXPECT_EQ(server.stopDevice(10, proc), 0);
    EXPECT_EQ(server.destroyIOProc(10, proc), 0);
    EXPECT_EQ(first.log, (std::vector<std::string>{"start", "stop", "stop", "release"}));
    EXPECT_NE(server.stopDevice(10, proc), 0);
    EXPECT_NE(server.destroyIOProc(10, proc), 0);
}

TEST_F(PropertyServerTest, ACallbackBelongsToItsDevice) {
    Hardware::IOProcId proc = nullptr;
    ASSERT_EQ(server.createIOProc(
                  10, [](AudioBufferList*) {}, proc),
              0);
    EXPECT_NE(server.startDevice(11, proc), 0);
    EXPECT_NE(server.startDevice(10, nullptr), 0);
    EXPECT_EQ(server.startDevice(10, proc), 0);
}

TEST_F(PropertyServerTest, TheLayersRefusalsArePassedOn) {
    Hardware::IOProcId proc = nullptr;
    first.openStatus = -50;
    EXPECT_EQ(server.createIOProc(
                  10, [](AudioBufferList*) {}, proc),
              -50);
    EXPECT_EQ(proc, nullptr);
    EXPECT_EQ(server.createIOProc(
                  99, [](AudioBufferList*) {}, proc),
              kAudioHardwareBadDeviceError);
    first.openStatus = 0;
    first.startStatus = -51;
    ASSERT_EQ(server.createIOProc(
                  10, [](AudioBufferList*) {}, proc),
              0);
    EXPECT_EQ(server.startDevice(10, proc), -51);
}

TEST_F(PropertyServerTest, AStreamOfAVanishedDeviceIsStillReleased) {
    Hardware::IOProcId proc = nullptr;
    ASSERT_EQ(server.createIOProc(
                  10, [](AudioBufferList*) {}, proc),
              0);
    first.devices.reset();
    EXPECT_EQ(server.stopDevice(10, proc), 0);
    EXPECT_EQ(server.destroyIOProc(10, proc), 0);
    EXPECT_EQ(first.log.back(), "release");
}

TEST_F(PropertyServerTest, XrunsBelongToARegisteredStream) {
    read(10, kDevicePropertyXruns, kGlobal);
    EXPECT_EQ(status, kAudioHardwareUnknownPropertyError);
    Hardware::IOProcId proc = nullptr;
    ASSERT_EQ(server.createIOProc(
                  10, [](AudioBufferList*) {}, proc),
              0);
    EXPECT_EQ(items<std::uint64_t>(10, kDevicePropertyXruns, kGlobal),
              std::vector<std::uint64_t>{7});
}

}
}
