#include "audio/devices.h"

#include "tests/support/FakeHardware.h"

#include <gmock/gmock.h>

#include <cstring>
#include <limits>

namespace tallyvox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto globalScope = kAudioObjectPropertyScopeGlobal;
constexpr auto outputScope = kAudioObjectPropertyScopeOutput;

std::vector<std::string> lines(const std::vector<OutputDevice>& outputs) {
    std::vector<std::string> texts;
    texts.reserve(outputs.size());
    for (const auto& output : outputs)
        texts.push_back(std::to_string(output.id) + ' ' + output.name + ' ' +
                        std::to_string(output.channels) + ' ' +
                        std::to_string(static_cast<std::int64_t>(output.rate)));
    return texts;
}

class Devices : public testing::Test {
protected:
    FakeHardware::Property& list() {
        return hardware.property(kAudioObjectSystemObject, kAudioHardwarePropertyDevices);
    }
    FakeHardware::Property& configuration(std::uint32_t id) {
        return hardware.property(id, kAudioDevicePropertyStreamConfiguration, outputScope);
    }
    std::vector<std::string> listed() { return lines(devices(hardware)); }

    FakeHardware hardware;
};

TEST(Address, IsInTheGlobalScopeAtTheMainElementUnlessSaidOtherwise) {
    const auto plain = address(kAudioHardwarePropertyDevices);
    EXPECT_EQ(plain.mSelector, 0x64657623U);
    EXPECT_EQ(plain.mScope, 0x676C6F62U);
    EXPECT_EQ(plain.mElement, 0U);
    EXPECT_EQ(address(1, kAudioObjectPropertyScopeOutput).mScope, 0x6F757470U);
}

TEST_F(Devices, NoDevicesGiveAnEmptyList) { EXPECT_THAT(listed(), IsEmpty()); }

TEST_F(Devices, AListThatCannotBeSizedIsEmpty) {
    hardware.addDevice(7, "Out", {2}, 48000);
    list().sizeStatus = -50;
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_THAT(hardware.log, ElementsAre("size 1 dev# glob"));
}

TEST_F(Devices, AListThatCannotBeReadIsEmpty) {
    hardware.addDevice(7, "Out", {2}, 48000);
    list().dataStatus = -50;
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_THAT(hardware.log, ElementsAre("size 1 dev# glob", "data 1 dev# glob 4"));
}

TEST_F(Devices, EveryDeviceIsAskedInTheSameOrder) {
    hardware.addDevice(7, "Out", {2}, 48000);
    EXPECT_THAT(listed(), ElementsAre("7 Out 2 48000"));
    EXPECT_THAT(hardware.log,
                ElementsAre("size 1 dev# glob", "data 1 dev# glob 4", "size 7 slay outp",
                            "data 7 slay outp 24", "data 7 lnam glob 8", "data 7 nsrt glob 8"));
}

TEST_F(Devices, TheListIsReadAfreshEveryTime) {
    hardware.addDevice(7, "Out", {2}, 48000);
    EXPECT_THAT(listed(), ElementsAre("7 Out 2 48000"));
    hardware.setRate(7, 96000);
    hardware.setBuffers(7, {4});
    EXPECT_THAT(listed(), ElementsAre("7 Out 4 96000"));
    hardware.removeDevice(7);
    EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(Devices, TheChannelsOfAllBuffersAreSummed) {
    hardware.addDevice(7, "Wide", {32, 32}, 48000);
    hardware.addDevice(8, "Split", std::vector<std::uint32_t>(64, 1), 48000);
    EXPECT_THAT(listed(), ElementsAre("7 Wide 64 48000", "8 Split 64 48000"));
}

TEST_F(Devices, TheSumIsWiderThan32Bits) {
    constexpr auto most = std::numeric_limits<std::uint32_t>::max();
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.setBuffers(7, {most, most, 3});
    EXPECT_THAT(listed(), ElementsAre("7 Out 8589934593 48000"));
}

TEST_F(Devices, ADeviceWithoutOutputChannelsIsLeftOut) {
    hardware.addDevice(7, "Input only", {}, 48000);
    hardware.addDevice(8, "Empty buffers", {0, 0}, 48000);
    hardware.addDevice(9, "Out", {0, 1}, 48000);
    EXPECT_THAT(listed(), ElementsAre("9 Out 1 48000"));
}

TEST_F(Devices, TheOrderIsThePlatformsOwn) {
    hardware.addDevice(9, "Zulu", {2}, 48000);
    hardware.addDevice(3, "Alpha", {2}, 48000);
    EXPECT_THAT(listed(), ElementsAre("9 Zulu 2 48000", "3 Alpha 2 48000"));
}

TEST_F(Devices, ADeviceListedTwiceStaysTwice) {
    hardware.addDevice(9, "Out", {2}, 48000);
    hardware.setDevices({9, 9});
    EXPECT_THAT(listed(), ElementsAre("9 Out 2 48000", "9 Out 2 48000"));
}

TEST_F(Devices, AConfigurationThatCannotBeSizedLeavesTheDeviceOut) {
    hardware.addDevice(7, "Gone", {2}, 48000);
    hardware.addDevice(8, "Out", {2}, 48000);
    configuration(7).sizeStatus = kAudioHardwareBadObjectError;
    EXPECT_THAT(listed(), ElementsAre("8 Out 2 48000"));
}

TEST_F(Devices, AConfigurationThatCannotBeReadLeavesTheDeviceOut) {
    hardware.addDevice(7, "Gone", {2}, 48000);
    hardware.addDevice(8, "Out", {2}, 48000);
    configuration(7).dataStatus = kAudioHardwareBadObjectError;
    EXPECT_THAT(listed(), ElementsAre("8 Out 2 48000"));
}

TEST_F(Devices, ANameThatCannotBeReadIsUnknown) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.property(7, kAudioObjectPropertyName).dataStatus = -1;
    EXPECT_THAT(listed(), ElementsAre("7 Unknown output 2 48000"));
}

TEST_F(Devices, AnEmptyNameStaysEmpty) {
    hardware.addDevice(7, "", {2}, 48000);
    EXPECT_EQ(devices(hardware).at(0).name, "");
}

TEST_F(Devices, ANameIsReleasedOnce) {
    hardware.addDevice(7, "Ausgang Ä · 出力", {2}, 48000);
    EXPECT_THAT(listed(), ElementsAre("7 Ausgang Ä · 出力 2 48000"));
    // The hardware's end fails the test when a string is still out.
}

TEST_F(Devices, AShortReferenceIsNoName) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.property(7, kAudioObjectPropertyName).text.reset();
    hardware.setValue(7, kAudioObjectPropertyName, globalScope, std::vector<std::uint32_t>{1});
    EXPECT_THAT(listed(), ElementsAre("7 Unknown output 2 48000"));
}

TEST_F(Devices, ANullReferenceIsNoName) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.property(7, kAudioObjectPropertyName).text.reset();
    hardware.setValue(7, kAudioObjectPropertyName, globalScope, std::vector<std::uint64_t>{0});
    EXPECT_THAT(listed(), ElementsAre("7 Unknown output 2 48000"));
}

TEST_F(Devices, ARateThatCannotBeReadIsZero) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.property(7, kAudioDevicePropertyNominalSampleRate).dataStatus = -1;
    EXPECT_EQ(devices(hardware).at(0).rate, 0.0);
}

TEST_F(Devices, AShortRateIsZero) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.setValue(7, kAudioDevicePropertyNominalSampleRate, globalScope,
                      std::vector<std::uint32_t>{0x40E77000});
    EXPECT_EQ(devices(hardware).at(0).rate, 0.0);
}

TEST_F(Devices, ARateWithAFractionIsKept) {
    hardware.addDevice(7, "Out", {2}, 47952.047952047955);
    EXPECT_EQ(devices(hardware).at(0).rate, 47952.047952047955);
}

TEST_F(Devices, ASizeBelowOneIdGivesAnEmptyList) {
    hardware.addDevice(7, "Out", {2}, 48000);
    list().statedSize = 3;
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_THAT(hardware.log, ElementsAre("size 1 dev# glob", "data 1 dev# glob 0"));
}

TEST_F(Devices, ASizeIsCutToWholeIds) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.addDevice(8, "Second", {2}, 48000);
    list().statedSize = 7;
    EXPECT_THAT(listed(), ElementsAre("7 Out 2 48000"));
    EXPECT_EQ(hardware.log.at(1), "data 1 dev# glob 4");
}

TEST_F(Devices, AListShorterThanItsSizeEndsInIdZeroWhichIsNoDevice) {
    hardware.addDevice(7, "Out", {2}, 48000);
    list().statedSize = 12;
    EXPECT_THAT(listed(), ElementsAre("7 Out 2 48000"));
    EXPECT_EQ(std::count(hardware.log.begin(), hardware.log.end(), "size 0 slay outp"), 2);
}

TEST_F(Devices, AListThatGrowsBetweenSizeAndDataIsCut) {
    hardware.addDevice(7, "Out", {2}, 48000);
    hardware.before = [this](const std::string& line) {
        if (line == "data 1 dev# glob 4")
            hardware.addDevice(8, "Late", {2}, 48000);
    };
    EXPECT_THAT(listed(), ElementsAre("7 Out 2 48000"));
}

TEST_F(Devices, ADeviceMayVanishBeforeAnyOfItsAnswers) {
    for (const auto* moment :
         {"size 7 slay outp", "data 7 slay outp 24", "data 7 lnam glob 8", "data 7 nsrt glob 8"}) {
        FakeHardware vanishing;
        vanishing.addDevice(7, "Out", {2}, 48000);
        vanishing.addDevice(8, "Stays", {2}, 48000);
        vanishing.before = [&](const std::string& line) {
            if (line == moment)
                vanishing.removeDevice(7);
        };
        EXPECT_EQ(lines(devices(vanishing)).back(), "8 Stays 2 48000") << moment;
    }
}

TEST_F(Devices, AConfigurationShorterThanItsSizeCountsWhatItHolds) {
    hardware.addDevice(7, "Out", {2, 4}, 48000);
    configuration(7).value.resize(24); // the first buffer; the count still says two
    configuration(7).statedSize = 40;
    EXPECT_THAT(listed(), ElementsAre("7 Out 2 48000"));
}

TEST_F(Devices, ACountBeyondTheBlockIsBoundedByTheBlock) {
    hardware.addDevice(7, "Out", {2, 4}, 48000);
    const std::uint32_t lie = std::numeric_limits<std::uint32_t>::max();
    std::memcpy(configuration(7).value.data(), &lie, sizeof lie);
    EXPECT_THAT(listed(), ElementsAre("7 Out 6 48000"));
}

TEST_F(Devices, AConfigurationOfAnyLengthIsReadWithinItsBounds) {
    hardware.addDevice(7, "Out", {2, 4}, 48000);
    const auto whole = configuration(7).value;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        configuration(7).value.assign(whole.begin(), whole.begin() + std::ptrdiff_t(length));
        const std::int64_t expected = length >= 40 ? 6 : length >= 24 ? 2 : 0;
        std::int64_t channels = 0;
        for (const auto& output : devices(hardware))
            channels += output.channels;
        EXPECT_EQ(channels, expected) << length << " bytes";
    }
}

TEST_F(Devices, AnAbsurdSizeIsRefusedWithoutReading) {
    hardware.addDevice(7, "Huge", {2}, 48000);
    hardware.addDevice(8, "Out", {2}, 48000);
    configuration(7).statedSize = std::numeric_limits<std::uint32_t>::max();
    EXPECT_THAT(listed(), ElementsAre("8 Out 2 48000"));
    list().statedSize = std::numeric_limits<std::uint32_t>::max();
    EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(Devices, AListOfMillionsIsNotWalkedIdById) {
    hardware.addDevice(7, "Out", {2}, 48000);
    list().statedSize = 16U << 20U;
    EXPECT_THAT(listed(), IsEmpty());
    EXPECT_THAT(hardware.log, ElementsAre("size 1 dev# glob"));
}

}
}
