#include "audio/layer.h"
#include "audio/xruns.h"
#include "tests/support/FakeHardware.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

TEST(LayerOfADevice, IsTheTextThatItsLayerTells) {
    FakeHardware hardware;
    hardware.addDevice(7, "Out", {8}, 48000);
    hardware.property(7, kDevicePropertyLayer).text = "pipewire";
    EXPECT_EQ(layer(7, hardware), "pipewire");
}

TEST(LayerOfADevice, IsEmptyWhereTheSystemTellsNone) {
    FakeHardware hardware;
    hardware.addDevice(7, "Out", {8}, 48000);
    EXPECT_EQ(layer(7, hardware), "");
    hardware.property(7, kDevicePropertyLayer).text = "pipewire";
    hardware.property(7, kDevicePropertyLayer).dataStatus = -1;
    EXPECT_EQ(layer(7, hardware), "");
}

TEST(XrunsOfADevice, AreCountedInSixtyFourBits) {
    FakeHardware hardware;
    hardware.addDevice(7, "Out", {8}, 48000);
    hardware.setValue<std::uint64_t>(7, kDevicePropertyXruns, kAudioObjectPropertyScopeGlobal,
                                     {std::uint64_t{1} << 40U});
    EXPECT_EQ(xruns(7, hardware), std::uint64_t{1} << 40U);
}

TEST(XrunsOfADevice, AreNotToldByALayerThatDoesNotCount) {
    FakeHardware hardware;
    hardware.addDevice(7, "Out", {8}, 48000);
    EXPECT_EQ(xruns(7, hardware), std::nullopt);
    hardware.setValue<std::uint32_t>(7, kDevicePropertyXruns, kAudioObjectPropertyScopeGlobal, {5});
    EXPECT_EQ(xruns(7, hardware), std::nullopt);
}

}
}
