#include "ui/Texts.h"

#include <gtest/gtest.h>

#include <limits>

namespace tallyvox {
namespace {

TEST(Texts, AnOutputReadsAsItsNameAndItsChannels) {
    EXPECT_EQ(Texts::output({7, "Dante Virtual Soundcard", 64, 48000}),
              QStringLiteral("Dante Virtual Soundcard — 64 outputs"));
    EXPECT_EQ(Texts::output({7, "100% %1 %2", 1, 48000}), QStringLiteral("100% %1 %2 — 1 outputs"));
    EXPECT_EQ(Texts::output({7, "Глубина 12", 1234567, 0}),
              QStringLiteral("Глубина 12 — 1234567 outputs"));
}

TEST(Texts, TheBadgeSaysWhetherItPlays) {
    EXPECT_EQ(Texts::badge(true), QStringLiteral("PLAYING"));
    EXPECT_EQ(Texts::badge(false), QStringLiteral("STOPPED"));
}

TEST(Texts, NumbersAreNotGrouped) {
    EXPECT_EQ(Texts::first(1), QStringLiteral("First: 1"));
    EXPECT_EQ(Texts::last(-1234567), QStringLiteral("Last: -1234567"));
    EXPECT_EQ(Texts::range(1, 8), QStringLiteral("CHANNELS 1–8"));
    EXPECT_EQ(Texts::range(1, 0), QStringLiteral("CHANNELS 1–0"));
    EXPECT_EQ(Texts::range(std::numeric_limits<qlonglong>::min(), 12345),
              QStringLiteral("CHANNELS -9223372036854775808–12345"));
}

TEST(Texts, TheLevelIsTruncatedTowardZero) {
    EXPECT_EQ(Texts::level(-24.0), QStringLiteral("-24 dBFS"));
    EXPECT_EQ(Texts::level(-24.9), QStringLiteral("-24 dBFS"));
    EXPECT_EQ(Texts::level(-0.9), QStringLiteral("0 dBFS"));
    EXPECT_EQ(Texts::level(-6), QStringLiteral("-6 dBFS"));
}

TEST(Texts, TheGapHasOneDecimal) {
    EXPECT_EQ(Texts::gap(0.7), QStringLiteral("0.7 sec"));
    EXPECT_EQ(Texts::gap(3), QStringLiteral("3.0 sec"));
    EXPECT_EQ(Texts::gap(0.2 + 0.1), QStringLiteral("0.3 sec"));
}

TEST(Texts, TheModeAndItsHintFollowTheSwitch) {
    EXPECT_EQ(Texts::mode(true), QStringLiteral("One channel at a time"));
    EXPECT_EQ(Texts::mode(false), QStringLiteral("All selected channels together"));
    EXPECT_EQ(Texts::hint(true), QStringLiteral("Cycles in order, then repeats"));
    EXPECT_EQ(Texts::hint(false), QStringLiteral("Click a channel to solo it"));
}

TEST(Texts, TheAnnouncementIsToldByModeThenBySolo) {
    EXPECT_EQ(Texts::announcement(true, 0, 1, 8), QStringLiteral("Channels 1 → 8 → repeat"));
    EXPECT_EQ(Texts::announcement(true, 3, 1, 8), QStringLiteral("Channels 1 → 8 → repeat"));
    EXPECT_EQ(Texts::announcement(false, 3, 1, 8), QStringLiteral("Only channel 3 will play"));
    EXPECT_EQ(Texts::announcement(false, 1, 1, 8), QStringLiteral("Only channel 1 will play"));
    EXPECT_EQ(Texts::announcement(false, 0, 1, 8),
              QStringLiteral("Channel 1 → one  ·  Channel 2 → two"));
    EXPECT_EQ(Texts::announcement(false, -1, 1, 8),
              QStringLiteral("Channel 1 → one  ·  Channel 2 → two"));
}

TEST(Texts, ACellShowsTwoDigitsAtLeast) {
    EXPECT_EQ(Texts::cellNumber(1), QStringLiteral("01"));
    EXPECT_EQ(Texts::cellNumber(9), QStringLiteral("09"));
    EXPECT_EQ(Texts::cellNumber(10), QStringLiteral("10"));
    EXPECT_EQ(Texts::cellNumber(128), QStringLiteral("128"));
}

TEST(Texts, ACellSaysItsChannelOrItsSolo) {
    EXPECT_EQ(Texts::cellCaption(3, false), QStringLiteral("CH 3"));
    EXPECT_EQ(Texts::cellCaption(3, true), QStringLiteral("SOLO"));
    EXPECT_EQ(Texts::cellLabel(3, false), QStringLiteral("Channel 3, select solo"));
    EXPECT_EQ(Texts::cellLabel(3, true), QStringLiteral("Channel 3, solo selected"));
}

TEST(Texts, ACheckBoxReportsItsState) {
    EXPECT_EQ(Texts::checked(true), QStringLiteral("Checked"));
    EXPECT_EQ(Texts::checked(false), QStringLiteral("Unchecked"));
}

}
}
