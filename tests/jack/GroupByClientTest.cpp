#include "platform/linux/jack/JackClient.h"

#include <gmock/gmock.h>

namespace tallyvox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GroupByClient, KeepsThePortsOrderWithinAClient) {
    const auto devices = groupByClient({"system:playback_10", "system:playback_2"});
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].name, "system");
    EXPECT_THAT(devices[0].ports, ElementsAre("system:playback_10", "system:playback_2"));
}

TEST(GroupByClient, BringsTogetherWhatOthersInterrupt) {
    const auto devices = groupByClient({"b:1", "a:1", "b:2", "a:2"});
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(devices[0].name, "b");
    EXPECT_THAT(devices[0].ports, ElementsAre("b:1", "b:2"));
    EXPECT_THAT(devices[1].ports, ElementsAre("a:1", "a:2"));
}

TEST(GroupByClient, TakesTheLastColonForTheEndOfTheName) {
    const auto devices = groupByClient({"Interface: 2:in_1"});
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].name, "Interface: 2");
}

TEST(GroupByClient, ForgetsPortsWithoutAClient) {
    EXPECT_THAT(groupByClient({"stray"}), IsEmpty());
    EXPECT_THAT(groupByClient({}), IsEmpty());
}

}
}
