#include "platform/linux/makeHardware.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tallyvox {
namespace {

std::uint32_t listed(Hardware& hardware) {
    std::uint32_t bytes = 99;
    EXPECT_EQ(hardware.propertyDataSize(
                  kAudioObjectSystemObject,
                  {kAudioHardwarePropertyDevices, kAudioObjectPropertyScopeGlobal, kMainElement},
                  bytes),
              0);
    return bytes / 4;
}

TEST(MakeHardwareTest, VirtualDevicesReplaceEverything) {
    std::ostringstream complaints;
    const auto hardware = makeHardware("virtual:8@44100,64@48000", {}, complaints);
    EXPECT_EQ(listed(*hardware), 2U);
    EXPECT_EQ(complaints.str(), "");
}

class SystemLayer : public ::testing::TestWithParam<const char*> {};

TEST_P(SystemLayer, CanBeChosenAlone) {
    std::ostringstream complaints;
    EXPECT_NE(makeHardware(GetParam(), {}, complaints), nullptr);
    EXPECT_EQ(complaints.str(), "");
}

INSTANTIATE_TEST_SUITE_P(MakeHardwareTest, SystemLayer,
                         ::testing::Values("", "pipewire", "jack", "alsa"));

class UnreadableChoice : public ::testing::TestWithParam<const char*> {};

TEST_P(UnreadableChoice, GivesOneLineAndNoOutputs) {
    std::ostringstream complaints;
    const auto hardware = makeHardware(GetParam(), {}, complaints);
    EXPECT_EQ(listed(*hardware), 0U);
    const std::string line = complaints.str();
    EXPECT_NE(line.find(std::string("TALLYVOX_AUDIO=") + GetParam()), std::string::npos);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
}

INSTANTIATE_TEST_SUITE_P(MakeHardwareTest, UnreadableChoice,
                         ::testing::Values("nothing", "Pipewire", "virtual", "virtual:",
                                           "virtual:8", "virtual:8@48000,", "pipewire,jack", " "));

}
}
